// Starts an engine and waits for its end.
#include "engine_end.h"

#include <gtest/gtest.h>

#include "launch/engine_command.h"
#include "launch/engine_start.h"

EngineEnd RunEngine(WideView engine, const ScratchFolder& folder, const VmConfig& config, EngineRun run) {
    const WideText program = BuildFile(engine);
    const WideText log = folder.Of(TEXT("veldranevm.log"));
    const OwnedHandle process = StartEngine(
        program, BuildEngineCommandLine(program, config, run == EngineRun::Dry), folder.path, log);
    EngineEnd end;
    EXPECT_EQ(WaitForSingleObject(process.Get(), 90000), WAIT_OBJECT_0);
    EXPECT_TRUE(GetExitCodeProcess(process.Get(), &end.exit_code));
    end.log = ReadBytes(log);
    return end;
}
