// Creates the process with exactly two inherited handles: the log and the input.
#include "launch/engine_start.h"

#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "base/text_convert.h"
#include "base/windows_error.h"

namespace {

OwnedHandle OpenInheritable(const WCHAR* path, DWORD access, DWORD disposition) {
    SECURITY_ATTRIBUTES inheritable{};
    inheritable.nLength = sizeof inheritable;
    inheritable.bInheritHandle = TRUE;
    return OwnedHandle(CreateFileW(path, access, FILE_SHARE_READ | FILE_SHARE_WRITE, &inheritable,
                                   disposition, FILE_ATTRIBUTE_NORMAL, nullptr));
}

// An attribute list with room for one attribute.
class AttributeList {
public:
    AttributeList() {
        SIZE_T size = 0;
        InitializeProcThreadAttributeList(nullptr, 1, 0, &size);
        buffer_.resize(size);
        if (InitializeProcThreadAttributeList(Get(), 1, 0, &size) == FALSE)
            throw std::runtime_error("Initialisation du lancement impossible.");
    }
    ~AttributeList() {
        DeleteProcThreadAttributeList(Get());
    }
    AttributeList(const AttributeList&) = delete;
    AttributeList& operator=(const AttributeList&) = delete;

    LPPROC_THREAD_ATTRIBUTE_LIST Get() {
        return reinterpret_cast<LPPROC_THREAD_ATTRIBUTE_LIST>(buffer_.data());
    }

private:
    std::vector<unsigned char> buffer_;
};

PROCESS_INFORMATION CreateEngineProcess(const WideText& engine_path, WideText& command_line,
                                        const WideText& directory, HANDLE log, HANDLE input) {
    AttributeList attributes;
    HANDLE inherited[] = {log, input};
    STARTUPINFOEXW startup{};
    startup.StartupInfo.cb = sizeof startup;
    startup.StartupInfo.dwFlags = STARTF_USESTDHANDLES;
    startup.StartupInfo.hStdInput = input;
    startup.StartupInfo.hStdOutput = log;
    startup.StartupInfo.hStdError = log;
    startup.lpAttributeList = attributes.Get();
    PROCESS_INFORMATION process{};
    if (UpdateProcThreadAttribute(attributes.Get(), 0, PROC_THREAD_ATTRIBUTE_HANDLE_LIST, inherited,
                                  sizeof inherited, nullptr, nullptr) == FALSE ||
        CreateProcessW(engine_path.c_str(), command_line.data(), nullptr, nullptr, TRUE,
                       CREATE_NO_WINDOW | EXTENDED_STARTUPINFO_PRESENT, nullptr, directory.c_str(),
                       &startup.StartupInfo, &process) == FALSE)
        throw std::runtime_error("Lancement impossible : " + Utf8FromWide(WindowsErrorText(GetLastError())));
    return process;
}

}  // namespace

OwnedHandle StartEngine(const WideText& engine_path, WideText command_line, const WideText& directory,
                        const WideText& log_path) {
    const OwnedHandle log = OpenInheritable(log_path.c_str(), GENERIC_WRITE, CREATE_ALWAYS);
    if (!log)
        throw std::runtime_error("Impossible de créer veldranevm.log.");
    const OwnedHandle input = OpenInheritable(TEXT("NUL"), GENERIC_READ, OPEN_EXISTING);
    if (!input)
        throw std::runtime_error("Initialisation de l'entrée standard impossible.");
    const PROCESS_INFORMATION process =
        CreateEngineProcess(engine_path, command_line, directory, log.Get(), input.Get());
    CloseHandle(process.hThread);
    return OwnedHandle(process.hProcess);
}
