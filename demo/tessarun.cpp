// The stand-in engine: takes the launcher's command line, checks the files that it names and plays a short
// machine, so that the launcher can be tried and tested without the real engine.
//
// Exit codes: 0 for a sound dry run, 1 for a check that failed or output that cannot be written, 2 for a
// command line that is not the launcher's, 124 for a machine that its time limit stopped, otherwise the code
// that demo.code= on the kernel command line names. With code above 255 a host process can only end by a
// signal: the code must then be an exception's.
#include <vector>

#include "adapter/engine_checks.h"
#include "adapter/engine_main.h"
#include "adapter/engine_output.h"
#include "adapter/engine_request.h"
#include "base/file_system.h"
#include "base/text_convert.h"
#include "demo/inherited_handles.h"
#include "demo/tessarun_machine.h"
#include "demo/tessarun_script.h"
#include "platform/win32.h"

namespace {

void TellStart(const std::vector<WideText>& arguments) {
    PrintLine("Moteur de démonstration : remplace tessarun, n'exécute aucun noyau.");
    PrintLine("Arguments : " + NumberText(arguments.size()));
    for (const WideText& argument : arguments)
        PrintLine(Utf8FromWide(argument));
    PrintLine("Répertoire de travail : " + Utf8FromWide(CurrentDirectory()));
    const std::vector<std::string> handles = InheritedHandles();
    PrintLine("Handles hérités : " + NumberText(handles.size()));
    for (const std::string& handle : handles)
        PrintLine("Handle hérité : " + handle);
}

std::uint32_t CheckAndPlay(const EngineRequest& request, const MachineScript& script) {
    CheckFiles(request.config);
    if (request.dry_run) {
        PrintLine("Vérification réussie.");
        return 0;
    }
    if (!request.config.dump.empty())
        PrintLine("Aucune image exportée : ce moteur n'a pas d'écran.");
    return PlayMachine(script, request.config.timeout_ms);
}

std::uint32_t Run(const std::vector<WideText>& arguments, std::uint32_t& failure_code) {
    TellStart(arguments);
    failure_code = USAGE_EXIT_CODE;
    const EngineRequest request = ParseEngineArguments(arguments);
    const MachineScript script = ParseMachineScript(request.config.command);
    failure_code = CHECK_EXIT_CODE;
    return CheckAndPlay(request, script);
}

}  // namespace

extern "C" int wmain(int argc, WCHAR** argv) {
    RunEngineProcess(argc, argv, Run);
}
