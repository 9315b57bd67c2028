// A whole run of an engine of the build, started as the launcher starts it.
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

// The engine's log and its working directory are the folder's.
EngineEnd RunEngine(WideView engine, const ScratchFolder& folder, const VmConfig& config, EngineRun run);
