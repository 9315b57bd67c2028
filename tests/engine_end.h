// Runs an engine of the build to its end, started as by the launcher.
#pragma once

#include <string>

#include "config/vm_config.h"
#include "scratch.h"

struct EngineEnd {
    DWORD exit_code = 0;
    std::string log;

    bool Says(const std::string& part) const {
        return log.find(part) != std::string::npos;
    }
};

enum class EngineRun { Real, Dry };

// The path of a file of the build, beside the test program.
WideText InBuild(WideView name);

// The folder is the engine's working directory and contains its log.
EngineEnd RunEngine(WideView engine, const ScratchFolder& folder, const VmConfig& config, EngineRun run);
