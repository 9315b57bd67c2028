// The stand-in engine: reads the launcher's command line, checks the files in it and simulates a short
// machine, so that the launcher can be tried and tested without the real engine.
//
// Exit codes: 0 for a successful dry run; 1 for a failed check or output that cannot be written; 2 for a
// command line that the launcher would not write, and for an invalid word that starts with "demo."; 124 for
// the time limit; otherwise the value of demo.code= on the kernel command line. On Linux a code above 255
// must be an exception code that corresponds to a signal: the process ends by this signal.
#include <stdexcept>
#include <vector>

#include "adapter/engine_checks.h"
#include "adapter/engine_process.h"
#include "base/file_system.h"
#include "base/text_convert.h"
#include "demo/inherited_handles.h"
#include "demo/tessarun_machine.h"
#include "demo/tessarun_script.h"
#include "launch/engine_command.h"
#include "platform/win32.h"

namespace {

void PrintStart(const std::vector<WideText>& arguments) {
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
        return SUCCESS_EXIT_CODE;
    }
    if (!request.config.dump.empty())
        PrintLine("Aucune image exportée : ce moteur n'a pas d'écran.");
    return PlayMachine(script, request.config.timeout_ms);
}

void Run(const std::vector<WideText>& arguments, std::uint32_t& exit_code) {
    PrintStart(arguments);
    exit_code = USAGE_EXIT_CODE;
    const EngineRequest request = ParseEngineArguments(arguments);
    if (BuildEngineArguments(request.config, request.dry_run) != arguments)
        throw std::runtime_error("Le lanceur n'écrit pas cette ligne de commande.");
    const MachineScript script = ParseMachineScript(request.config.command);
    exit_code = FAILURE_EXIT_CODE;
    exit_code = CheckAndPlay(request, script);
}

}  // namespace

extern "C" int wmain(int argc, WCHAR** argv) {
    RunEngineProcess(argc, argv, Run);
}
