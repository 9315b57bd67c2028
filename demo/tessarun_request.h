// What the stand-in engine is asked to do: the launcher's command line read back into a record, and the words
// of the kernel command line that play the machine.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "config/vm_config.h"

struct EngineRequest {
    VmConfig config;
    bool dry_run = false;
};

// Reads the arguments after the engine's own name: the kernel, then the options in the one order in which
// the launcher gives them. Throws for a missing kernel, an option that is unknown, repeated, out of its place
// or absent, a missing or empty value, and for a number that is out of bounds or not in its shortest form.
EngineRequest ParseEngineArguments(const std::vector<WideText>& arguments);

// A short play of a machine.
struct MachineScript {
    std::uint32_t duration_ms = 200;  // demo.duree=N, at most 3600000
    std::uint32_t lines = 3;          // demo.lignes=N, at most 100000, spread evenly over the duration
    std::uint32_t exit_code = 0;      // demo.code=N, 32 bits
    std::uint32_t filler_bytes = 0;   // demo.octets=N, at most 64 MiB of log in front of the lines
    bool writes_bad_utf8 = false;     // demo.invalide: a byte that is no UTF-8
    WideText awaited;                 // demo.attend=FILE: the machine lives on until this file is there
    std::vector<std::string> texts;   // demo.texte=TEXT: a line of its own; can stand several times
};

// Reads the words of a kernel command line, which blanks separate. Words that do not begin with "demo." are
// the kernel's own. Throws for an unknown word that does and for a number that is none or too large.
MachineScript ParseMachineScript(WideView kernel_command);
