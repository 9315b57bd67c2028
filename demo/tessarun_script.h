// The words of the kernel command line that control the stand-in engine's machine.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/win32.h"

struct MachineScript {
    std::uint32_t duration_ms = 200;  // demo.duree=N, at most 3600000
    std::uint32_t lines = 3;          // demo.lignes=N, at most 100000, spread evenly over the duration
    std::uint32_t exit_code = 0;      // demo.code=N, 32 bits
    std::uint32_t filler_bytes = 0;   // demo.octets=N, at most 64 MiB, printed before the lines
    bool writes_bad_utf8 = false;     // demo.invalide: prints a byte that is not valid UTF-8
    WideText awaited_file;            // demo.attend=FILE: the machine does not end before this file exists
    std::vector<std::string> texts;   // demo.texte=TEXT: a line of the log; can be repeated
};

// Reads the words of a kernel command line, which are separated by spaces. Ignores words that do not begin
// with "demo.". Throws for an unknown word that begins with "demo.", and for a number that ParseNumber
// refuses.
MachineScript ParseMachineScript(WideView kernel_command);
