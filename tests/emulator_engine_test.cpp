// The engine on an emulator, without an emulator: the boot image, the emulator's command line, and the lines
// of its control channel.
#include <gtest/gtest.h>

#include "adapter/boot_image.h"
#include "adapter/control.h"
#include "adapter/emulator.h"
#include "adapter/kernel_format.h"
#include "cases.h"
#include "scratch.h"

namespace {

constexpr std::uint64_t MEMORY = 16 << 20;

VmConfig SmallMachine() {
    VmConfig config;
    config.ram_mib = 16;
    return config;
}

std::string Words(std::initializer_list<std::uint32_t> words) {
    std::string bytes;
    for (const std::uint32_t word : words)
        for (int shift = 0; shift < 32; shift += 8)
            bytes += static_cast<char>(word >> shift);
    return bytes;
}

struct Segment {
    std::uint32_t virtual_address;
    std::uint32_t address;
    std::string content;
    std::uint32_t memory_bytes;
    std::uint32_t flags = 5;  // readable and executable
};

std::string Elf(const std::vector<Segment>& segments, std::uint32_t entry) {
    std::string file = Words({0x464C457F, 0x00010101, 0, 0, 0x00030002, 1, entry, 52, 0, 0, 52 | 32 << 16,
                              static_cast<std::uint32_t>(segments.size()), 0});
    std::string contents;
    const std::size_t behind = file.size() + segments.size() * 32;
    for (const Segment& segment : segments) {
        const auto bytes = static_cast<std::uint32_t>(segment.content.size());
        file += Words({1, static_cast<std::uint32_t>(behind + contents.size()), segment.virtual_address,
                       segment.address, bytes, segment.memory_bytes, segment.flags, 4});
        contents += segment.content;
    }
    return file + contents;
}

std::string Header(std::uint32_t flags, std::uint32_t width, std::uint32_t height, std::uint32_t text = 0,
                   std::uint32_t bits = 32) {
    return Words({0x1BADB002, flags, ~(0x1BADB002 + flags) + 1, 0, 0, 0, 0, 0, text, width, height, bits});
}

// A kernel of one page at 1 MiB.
std::string SmallKernel(const std::string& content = Header(3, 0, 0)) {
    return Elf({{0x100000, 0x100000, content, 4096}}, 0x100000);
}

// The machine's memory after the emulator has loaded the image.
struct Loaded {
    std::string memory;
    std::uint32_t entry = 0;

    explicit Loaded(const std::string& file) : memory(MEMORY, '\0') {
        const auto elf = RecordAt<ElfHeader>(file, 0);
        entry = elf.entry;
        for (std::size_t at = 0; at < elf.program_header_count; ++at) {
            const auto header = RecordAt<ProgramHeader>(file, 52 + at * 32);
            EXPECT_EQ(header.virtual_address, header.physical_address)
                << "a loader would translate the entry";
            EXPECT_LE(header.file_bytes, header.memory_bytes);
            memory.replace(header.physical_address, header.file_bytes,
                           file.substr(header.offset, header.file_bytes));
        }
    }
    std::uint32_t Word(std::size_t address) const {
        return RecordAt<std::uint32_t>(memory, address);
    }
    // The address of the stub's record.
    std::uint32_t Record() const {
        return Word(entry + 1);
    }
    std::string Text(std::size_t address) const {
        return memory.c_str() + address;
    }
};

TEST(BootImage, ContainsTheKernelItsArgumentsAndItsModules) {
    const std::string code = Header(3, 0, 0) + "code";
    const std::string kernel =
        Elf({{0xC0100000, 0x100000, code, 0x1000}, {0, 0x300004, "data", 0x5000}}, 0xC0100030);
    const std::vector<std::string> contents = {std::string(4097, 'a'), "", std::string(4096, 'c')};
    VmConfig config = SmallMachine();
    config.command = TEXT(" a,\"b\" é ");
    config.modules = {{TEXT("a"), TEXT("x y ")}, {TEXT("b"), TEXT("")}, {TEXT("c"), TEXT("z")}};
    std::string file = ComposeBootImage(kernel, config, {4097, 0, 4096}).front;
    for (const std::string& content : contents)
        file += content + std::string(PaddingBehind(content.size()), '\0');
    const Loaded machine(file);
    const std::size_t header = file.find(Words({0x1BADB002, 3, 0xE4524FFB}));
    EXPECT_EQ(header, file.find(Words({0x1BADB002}))) << "the loader uses the first header";
    EXPECT_TRUE(header % 4 == 0 && header < 8192 - 12);

    EXPECT_EQ(machine.memory.substr(0x100000, code.size()), code);
    EXPECT_EQ(machine.memory.substr(0x300004, 5), std::string("data\0", 5));
    EXPECT_EQ(machine.entry, 0x306000U) << "on the page after all of the kernel's memory";
    EXPECT_EQ(machine.memory[machine.entry], '\xBD') << "the stub's first instruction loads an address";
    const std::uint32_t record = machine.Record();
    EXPECT_TRUE(record % 4 == 0 && record > machine.entry && record < machine.entry + 4096);
    EXPECT_EQ(machine.Word(record + 60), 0x100030U) << "the physical address of the entry";
    EXPECT_EQ(machine.Text(machine.Word(record)), " a,\"b\" é ");
    EXPECT_EQ(machine.Word(record + 44), 0U) << "no display mode";
    ASSERT_EQ(machine.Word(record + 4), contents.size());
    for (std::size_t at = 0; at < contents.size(); ++at) {
        const std::size_t row = machine.Word(record + 8) + 16 * at;
        EXPECT_EQ(machine.Word(row) % 4096, 0U);
        EXPECT_EQ(machine.memory.substr(machine.Word(row), machine.Word(row + 4) - machine.Word(row)),
                  contents[at]);
        EXPECT_EQ(machine.Text(machine.Word(row + 8)), Narrow(config.modules[at].command));
    }
}

std::string HeaderWithAddresses(std::uint32_t header, std::uint32_t end) {
    const std::uint32_t flags = 0x10003;
    return Words({0x1BADB002, flags, ~(0x1BADB002 + flags) + 1, header, 0x100000, end, 0x102001, 0x100024});
}

TEST(BootImage, LoadsAKernelAtTheAddressesInItsHeader) {
    for (const std::uint32_t end : {0U, 0x100028U}) {
        const std::string content = "text" + HeaderWithAddresses(0x100004, end) + "code";
        const std::string kernel = Elf({{0xC0100000, 0xC0100000, content, 0x1000}}, 0xC0100000);
        const Loaded machine(ComposeBootImage(kernel, SmallMachine(), {}).front);
        EXPECT_EQ(machine.memory.substr(0x100000, content.size()), content);
        EXPECT_EQ(machine.entry, 0x103000U);
        EXPECT_EQ(machine.Word(machine.Record() + 60), 0x100024U);
    }
}

TEST(BootImage, LeavesOutTheHeadersThatALinkerPutsBelowTheKernel) {
    const auto compose = [](const Segment& low) {
        std::string kernel = Elf({low, {0x100000, 0x100000, Header(3, 0, 0), 4096}}, 0x100000);
        kernel[52 + 4] = 0;  // the first segment starts with the file's first byte
        return MessageOf([&] { ComposeBootImage(kernel, SmallMachine(), {}); });
    };
    const std::string refused = "le noyau demande de la mémoire en dessous de 1 Mio.";
    EXPECT_EQ(compose({0xFF000, 0xFF000, std::string(116, 'h'), 0x1000, 4}), "");
    EXPECT_EQ(compose({0xFF000, 0xFF000, std::string(116, 'h'), 0x1001, 4}), refused);
    EXPECT_EQ(compose({0xFF000, 0xFF000, std::string(116, 'h'), 116, 5}), refused) << "executable";
    std::string kernel = Elf({{0xFF000, 0xFF000, "data", 4, 4}, {0x100000, 0x100000, "code", 4}}, 0x100000);
    EXPECT_EQ(MessageOf([&] { ComposeBootImage(kernel, SmallMachine(), {}); }), refused) << "not the headers";
}

TEST(BootImage, SetsTheRequestedDisplayMode) {
    using Mode = std::optional<DisplayMode>;
    const struct {
        std::string header;
        Mode imposed;
        Mode set;  // none: the text screen
        Mode asked = set;
    } CASES[] = {
        {Header(7, 1024, 768), {}, Mode({1024, 768})},
        {Header(7, 1023, 767), {}, Mode({1016, 767}), Mode({1023, 767})},
        {Header(7, 1024, 768, 0, 16), {}, Mode({1024, 768}), Mode({1024, 768, 16})},
        {Header(7, 1024, 768, 0, 0), {}, Mode({1024, 768})},
        {Header(7, 0, 0), {}, Mode({800, 600})},
        {Header(7, 1024, 768, 1), {}, {}},
        {Header(3, 1024, 768), {}, {}},
        {Header(7, 1024, 768), Mode({320, 200}), Mode({320, 200})},
        {std::string(48, 'x'), Mode({5, 1}), Mode({8, 1}), Mode({5, 1})},
        {std::string(48, 'x'), {}, {}},
    };
    for (const auto& tested : CASES) {
        VmConfig config = SmallMachine();
        config.explicit_video = tested.imposed.has_value();
        config.width = tested.imposed ? tested.imposed->width : 1;
        config.height = tested.imposed ? tested.imposed->height : 1;
        const BootImage image = ComposeBootImage(SmallKernel(tested.header), config, {});
        EXPECT_TRUE(image.mode == tested.set && image.asked_mode == tested.asked);
        const Loaded machine(image.front);
        EXPECT_EQ(machine.Word(machine.Record() + 44), tested.set ? tested.set->width : 0);
        EXPECT_EQ(machine.Word(machine.Record() + 48), tested.set ? tested.set->height : 0);
    }
}

TEST(BootImage, RefusesAKernelThatCannotBeLoaded) {
    const std::string whole = SmallKernel();
    std::string cut_table = whole;
    cut_table[44] = 9;
    const struct {
        std::string kernel;
        const char* message;
    } CASES[] = {
        {whole, ""},
        {whole.substr(0, whole.size() - 1), "fichier ELF tronqué."},
        {cut_table, "fichier ELF tronqué."},
        {whole.substr(0, 40), "fichier ELF tronqué."},
        {Elf({{0x100000, 0x100000, "abc", 2}}, 0x100000), "fichier ELF tronqué."},
        {Elf({{0xFFFFC, 0xFFFFC, "abcd", 4}}, 0xFFFFC),
         "le noyau demande de la mémoire en dessous de 1 Mio."},
        {Elf({{0x100000, 0x100000, "", 0}}, 0x100000),
         "le noyau n'a aucun segment à charger, ou plus de 128."},
        {Elf({{0x100000, 0x100000, "a", 1}}, 0x100001),
         "le point d'entrée du noyau n'est dans aucun segment."},
        {Elf({{0x100004, 0x100004, "", 4}, {0x100000, 0x100000, "a", 5}}, 0x100000),
         "des segments du noyau se chevauchent."},
        {Elf({{0xFFFFF000, 0xFFFFF000, "a", 0xFFFFFFFF}}, 0xFFFFF000),
         "le noyau et ses modules ne tiennent pas dans la mémoire : il faut 8193 Mio."},
        {SmallKernel(Header(8, 0, 0)), "l'en-tête Multiboot exige ce que ce moteur ne connaît pas."},
        {SmallKernel(HeaderWithAddresses(0x200000, 0)),
         "les adresses de l'en-tête Multiboot sont incohérentes."},
        {SmallKernel(HeaderWithAddresses(0x100000, 0x100021)),
         "les adresses de l'en-tête Multiboot sont incohérentes."},
        {SmallKernel(Header(4, 8193, 1)), "le noyau demande un écran de plus de 8192 points de côté."},
    };
    for (const auto& tested : CASES)
        EXPECT_EQ(MessageOf([&] { ComposeBootImage(tested.kernel, SmallMachine(), {}); }), tested.message);
    // The memory without the first MiB, the kernel's page, the added page and the firmware's part at the end.
    const std::uint64_t largest = MEMORY - 0x100000 - 2 * 4096 - 0x40000;
    VmConfig config = SmallMachine();
    config.modules = {{TEXT("m"), TEXT("")}};
    EXPECT_EQ(MessageOf([&] { ComposeBootImage(whole, config, {largest}); }), "");
    EXPECT_EQ(MessageOf([&] { ComposeBootImage(whole, config, {largest + 1}); }),
              "le noyau et ses modules ne tiennent pas dans la mémoire : il faut 17 Mio.");
}

TEST(EmulatorControl, RecognisesTheEndOfAMachine) {
    const struct {
        const char* reason;
        std::uint32_t exit_code;
        const char* first_word;
        bool has_screen = true;
    } CASES[] = {
        {"guest-shutdown", 0, "Machine éteinte"},
        {"guest-reset", 3, "Machine réinitialisée"},
        {"host-ui", 0, "Fenêtre", false},
        {"host-qmp-quit", 0, "Fenêtre", false},
        {"host-qmp-system-reset", 3, "Machine réinit"},
        {"host-signal", 4, "", false},
    };
    for (const auto& tested : CASES) {
        const std::string line = R"({"timestamp": {"seconds": 1, "microseconds": 2}, "event": "SHUTDOWN", )"
                                 R"("data": {"guest": true, "reason": ")" +
                                 std::string(tested.reason) + "\"}}\r";
        const std::optional<MachineEnd> end = EndOfEvent(ReadControlLine(line));
        ASSERT_TRUE(end) << line;
        EXPECT_EQ(end->exit_code, tested.exit_code) << line;
        EXPECT_TRUE(end->text.starts_with(tested.first_word)) << line;
        EXPECT_EQ(end->has_screen, tested.has_screen) << line;
    }
    for (const char* const line : {R"({"event": "STOP", "data": {"reason": "guest-reset"}})",
                                   R"({"event": "SHUTDOWN"})", "", "\"", "\"\\"})
        EXPECT_FALSE(EndOfEvent(ReadControlLine(line))) << line;
}

TEST(EmulatorControl, ReadsAnswersAndWritesCommands) {
    const ControlLine answer = ReadControlLine(R"({"return": "a\r\n\"b\" \\", "id": 7})");
    EXPECT_EQ(answer.at("return"), "a  \"b\" \\");
    EXPECT_TRUE(ReadControlLine(R"({"return": {}})").contains("return"));
    EXPECT_EQ(ReadControlLine(R"({"error": {"class": "GenericError", "desc": "no: file"}})").at("desc"),
              "no: file");
    EXPECT_EQ(WriteControlLine("screendump", R"("filename": "a.ppm")"),
              R"({"execute": "screendump", "id": "screendump", "arguments": {"filename": "a.ppm"}})"
              "\n");
    EXPECT_EQ(FirstByte(""), std::nullopt);
    EXPECT_EQ(FirstByte("AA=="), 0);
    EXPECT_EQ(FirstByte("yP8="), 200);
    EXPECT_EQ(FirstByte("/w=="), 255);
}

TEST(EmulatorControl, RecognisesAHaltedProcessorThatNoInterruptCanWake) {
    const std::string halted = " [---Z-P-] CPL=0 II=0 A20=1 SMM=0 HLT=1  ES =0010";
    EXPECT_EQ(HaltedAt("  EIP=00100033 EFL=00000046" + halted), "00100033");
    EXPECT_EQ(HaltedAt("  RIP=0000000000100033 RFL=00000046" + halted), "0000000000100033");
    EXPECT_FALSE(HaltedAt("  RIP=0000000000100033 RFL=00000246" + halted)) << "an interrupt can wake it";
    EXPECT_FALSE(HaltedAt("  EIP=00100033 EFL=00000046 [---Z-P-] A20=1 SMM=0 HLT=0  "));
    EXPECT_FALSE(HaltedAt("")) << "not a listing of the registers";
}

TEST(EmulatorArguments, ContainEachDiskTheUsersOptionsAndEnoughVideoMemory) {
    VmConfig config;
    config.ram_mib = 64;
    config.headless = true;
    EmulatorSetup setup;
    setup.program = TEXT("C:\\qemu-system-x86_64.exe");
    setup.image = "image.elf";
    config.ide = {TEXT(""), TEXT("C:\\a, b"), TEXT(""), TEXT("C:\\d")};
    setup.control_port = 1001;
    const auto line = [&] {
        std::string joined;
        for (const std::string& argument : EmulatorArguments(config, setup))
            joined += argument + "|";
        return joined;
    };
    const std::string first = line();
    for (const char* const part :
         {"|-cpu|qemu64|", "|-m|64|-kernel|image.elf|", "vgamem_mb=16|-display|none|",
          "|socket,id=control,host=127.0.0.1,port=1001|-mon|chardev=control,mode=control|",
          ",id=serial|-serial|chardev:serial|",
          "a,, b,format=raw,if=ide,index=1|-drive|file=", "d,format=raw,if=ide,index=3|"})
        EXPECT_NE(first.find(part), std::string::npos) << part << "\n" << first;
    EXPECT_EQ(first.find("index=0"), std::string::npos);
    EXPECT_EQ(first.find("|-S|"), std::string::npos);
    setup.is_stopped = true;
    setup.user_options = R"(  -s -D "C:\a b\trace.log" -d int)";
    EXPECT_TRUE(line().ends_with(R"(|-S|-s|-D|C:\a b\trace.log|-d|int|)")) << line();
    config.headless = false;
    for (const auto& [mode, video] : {std::pair(DisplayMode{8192, 8192}, "vgamem_mb=256|-display|gtk|"),
                                      std::pair(DisplayMode{2048, 2049}, "vgamem_mb=32|-display|gtk|")}) {
        setup.mode = mode;
        EXPECT_NE(line().find(video), std::string::npos) << line();
    }
    EXPECT_EQ(ProcessorOf(TEXT("C:\\qemu\\qemu-system-x86_64.exe")), "qemu64");
    EXPECT_EQ(ProcessorOf(TEXT("C:\\qemu\\qemu-system-i386.exe")), "qemu32");
}

}  // namespace
