// Starts an engine of the build as the launcher does, and waits for its end.
#pragma once

#include "config/vm_config.h"
#include "scratch.h"

struct EngineEnd {
    DWORD exit_code = 0;
    std::string log;

    bool LogContains(const std::string& part) const {
        return log.find(part) != std::string::npos;
    }
};

enum class EngineRun { Real, Dry };

// The folder is the engine's working directory and contains its log.
EngineEnd RunEngine(WideView engine, const ScratchFolder& folder, const VmConfig& config, EngineRun run);
