// A small Multiboot kernel. It prints the loader's information on the first serial port, reads a sector of the first
// disk and draws on the screen. Its arguments select how it ends: code=N (the exit code, 0 by default), fin=arret
// (halt), fin=boucle (endless loop), fin=extinction (power off) or fin=faute (triple fault).
#include <stdint.h>

enum { MAGIC = 0x2BADB002, HAS_FRAMEBUFFER = 1 << 12 };
enum { SERIAL = 0x3F8, EXIT_PORT = 0xF4, POWER = 0x604, POWER_OFF = 0x2000 };
enum { DISK = 0x1F0, DISK_ERROR = 1, DISK_DATA = 8, DISK_BUSY = 0x80, DISK_ABSENT = 0xFF, READ_SECTOR = 0x20 };

// Asks for modules on page boundaries, memory information and a screen of 640 x 480. The addresses are in the ELF file.
__attribute__((section(".multiboot"), used)) static const uint32_t header[12] = {
    0x1BADB002, 7, -(0x1BADB002 + 7), [9] = 640, 480, 32};

__asm__(".lcomm stack, 16384\n"
        ".globl start\n"
        "start: movl $stack + 16384, %esp; pushl %ebx; pushl %eax; call kernel\n"
        "halt: cli; hlt; jmp halt\n");

struct module {
    uint32_t start, end;
    const char* arguments;
    uint32_t reserved;
};

struct information {
    uint32_t flags, memory_lower, memory_upper, boot_device;
    const char* arguments;
    uint32_t module_count;
    const struct module* modules;
    uint32_t others[15];
    uint64_t framebuffer;
    uint32_t pitch, width, height;
    uint8_t depth;
};

static void write_port(uint16_t port, uint8_t value) {
    __asm__ volatile("outb %0, %1" : : "a"(value), "Nd"(port));
}

static uint8_t read_port(uint16_t port) {
    uint8_t value;
    __asm__ volatile("inb %1, %0" : "=a"(value) : "Nd"(port));
    return value;
}

static void print_byte(char byte) {
    while ((read_port(SERIAL + 5) & 0x20) == 0) {
    }
    write_port(SERIAL, (uint8_t)byte);
}

static void print(const char* text) {
    while (*text != '\0')
        print_byte(*text++);
}

static void print_number(const char* before, uint32_t number, const char* behind) {
    print(before);
    if (number >= 10)
        print_number("", number / 10, "");
    print_byte((char)('0' + number % 10));
    print(behind);
}

static void print_module(uint32_t at, const struct module* module) {
    uint32_t sum = 0;
    for (uint32_t byte = module->start; byte < module->end; ++byte)
        sum += *(const uint8_t*)byte;
    print_number("Module ", at, module->start % 4096 == 0 ? " : " : " (hors page) : ");
    print_number("", module->end - module->start, " octets, somme ");
    print_number("", sum, ", arguments [");
    print(module->arguments);
    print("]\n");
}

static void read_disk(void) {
    static char sector[513];
    uint32_t words = 256;
    char* to = sector;
    write_port(DISK + 6, 0xE0);  // the master drive, addressed by sector numbers (LBA)
    if (read_port(DISK + 7) == 0 || read_port(DISK + 7) == DISK_ABSENT) {
        print("Disque : aucun\n");
        return;
    }
    write_port(DISK + 2, 1);
    for (uint16_t at = 3; at <= 5; ++at)
        write_port(DISK + at, 0);
    write_port(DISK + 7, READ_SECTOR);
    uint8_t status;
    do {
        status = read_port(DISK + 7);
    } while ((status & DISK_BUSY) != 0 || (status & (DISK_DATA | DISK_ERROR)) == 0);
    __asm__ volatile("rep insw" : "+D"(to), "+c"(words) : "d"(DISK) : "memory");
    print("Disque, secteur 0 : [");
    print(sector);
    print("]\n");
}

// Red increases to the right, green downwards; the frame is white.
static void draw(const struct information* information) {
    const uint32_t width = information->width, height = information->height;
    if ((information->flags & HAS_FRAMEBUFFER) == 0) {
        print("Écran : texte\n");
        return;
    }
    for (uint32_t y = 0; y < height; ++y) {
        uint32_t* line = (uint32_t*)((uint32_t)information->framebuffer + y * information->pitch);
        for (uint32_t x = 0; x < width; ++x) {
            const int is_frame = x == 0 || y == 0 || x == width - 1 || y == height - 1;
            line[x] = is_frame ? 0xFFFFFF : x * 255 / width << 16 | y * 255 / height << 8 | 0x40;
        }
    }
    print_number("Écran : ", width, " x ");
    print_number("", height, " x ");
    print_number("", information->depth, "\n");
}

// The text after the word in the arguments; null when they do not contain the word.
static const char* text_after(const char* word, const char* arguments) {
    for (; *arguments != '\0'; ++arguments) {
        int length = 0;
        while (word[length] != '\0' && word[length] == arguments[length])
            ++length;
        if (word[length] == '\0')
            return arguments + length;
    }
    return 0;
}

static void end(const char* arguments) {
    static const uint16_t no_interrupt_table[3];
    if (text_after("fin=faute", arguments))
        __asm__ volatile("lidt %0; int3" : : "m"(no_interrupt_table));
    if (text_after("fin=extinction", arguments))
        __asm__ volatile("outw %0, %1" : : "a"((uint16_t)POWER_OFF), "d"((uint16_t)POWER));
    if (text_after("fin=extinction", arguments) || text_after("fin=arret", arguments))
        return;
    while (text_after("fin=boucle", arguments))
        __asm__ volatile("pause");
    uint8_t code = 0;
    for (const char* digit = text_after("code=", arguments); digit && *digit >= '0' && *digit <= '9'; ++digit)
        code = (uint8_t)(code * 10 + *digit - '0');
    write_port(EXIT_PORT, code);
}

void kernel(uint32_t magic, const struct information* information) {
    print("Un noyau Multiboot de 32 bits, sur une vraie machine.\nChargeur : ");
    print(magic == MAGIC ? "Multiboot" : "inconnu");
    print("\nArguments : [");
    print(information->arguments);
    print_number("]\nMémoire : ", information->memory_upper / 1024 + 1, " Mio\n");
    for (uint32_t at = 0; at < information->module_count; ++at)
        print_module(at, &information->modules[at]);
    read_disk();
    draw(information);
    print("Fin.\n");
    end(information->arguments);
}
