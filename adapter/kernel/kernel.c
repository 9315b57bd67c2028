// A small Multiboot kernel. It prints the loader's information on the first serial port, reads a sector of
// the first disk and draws on the screen. Its arguments select how it ends: code=N (the exit code, 0 by
// default), fin=arret (halt), fin=boucle (endless loop), fin=extinction (power off) or fin=faute (triple
// fault).
#include <stdint.h>

enum { MAGIC = 0x2BADB002, HAS_FRAMEBUFFER = 1 << 12 };
enum { SERIAL = 0x3F8, EXIT_PORT = 0xF4, POWER = 0x604, POWER_OFF = 0x2000 };
enum { DISK = 0x1F0, READ_SECTOR = 0x20 };
enum { DISK_ERROR = 1, DISK_DATA = 8, DISK_BUSY = 0x80, DISK_ABSENT = 0xFF };

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
    uint8_t depth, type;
};

void triple_fault(void);

static void write_port(uint16_t port, uint8_t value) {
    __asm__ volatile("outb %0, %1" : : "a"(value), "Nd"(port));
}

static uint8_t read_port(uint16_t port) {
    uint8_t value;
    __asm__ volatile("inb %1, %0" : "=a"(value) : "Nd"(port));
    return value;
}

static uint16_t read_wide_port(uint16_t port) {
    uint16_t value;
    __asm__ volatile("inw %1, %0" : "=a"(value) : "Nd"(port));
    return value;
}

// --- printing ---

static void print_byte(char byte) {
    while ((read_port(SERIAL + 5) & 0x20) == 0) {
    }
    write_port(SERIAL, (uint8_t)byte);
}

static void print(const char* text) {
    while (*text != '\0')
        print_byte(*text++);
}

static void print_number(uint32_t number) {
    if (number >= 10)
        print_number(number / 10);
    print_byte((char)('0' + number % 10));
}

static void print_modules(const struct information* information) {
    for (uint32_t at = 0; at < information->module_count; ++at) {
        const struct module* module = &information->modules[at];
        uint32_t sum = 0;
        for (uint32_t byte = module->start; byte < module->end; ++byte)
            sum += *(const uint8_t*)byte;
        print("Module ");
        print_number(at);
        print(module->start % 4096 == 0 ? " : " : " (hors page) : ");
        print_number(module->end - module->start);
        print(" octets, somme ");
        print_number(sum);
        print(", arguments [");
        print(module->arguments);
        print("]\n");
    }
}

// --- the disk ---

static void read_disk(void) {
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
    print("Disque, secteur 0 : [");
    for (int at = 0; at < 256; ++at) {
        const uint16_t pair = read_wide_port(DISK);
        if ((pair & 0xFF) != 0)
            print_byte((char)pair);
        if (pair >> 8 != 0)
            print_byte((char)(pair >> 8));
    }
    print("]\n");
}

// --- the screen ---

// Red increases to the right, green downwards; the frame is white.
static void draw(const struct information* information) {
    if ((information->flags & HAS_FRAMEBUFFER) == 0) {
        print("Écran : texte\n");
        return;
    }
    for (uint32_t y = 0; y < information->height; ++y) {
        uint32_t* line = (uint32_t*)((uint32_t)information->framebuffer + y * information->pitch);
        for (uint32_t x = 0; x < information->width; ++x) {
            const int is_frame =
                x == 0 || y == 0 || x == information->width - 1 || y == information->height - 1;
            line[x] = is_frame
                          ? 0xFFFFFF
                          : x * 255 / information->width << 16 | y * 255 / information->height << 8 | 0x40;
        }
    }
    print("Écran : ");
    print_number(information->width);
    print(" x ");
    print_number(information->height);
    print(" x ");
    print_number(information->depth);
    print("\n");
}

// --- the end ---

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
    if (text_after("fin=faute", arguments))
        triple_fault();
    const int is_off = text_after("fin=extinction", arguments) != 0;
    if (is_off)
        __asm__ volatile("outw %0, %1" : : "a"((uint16_t)POWER_OFF), "Nd"((uint16_t)POWER));
    if (is_off || text_after("fin=arret", arguments))
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
    print("]\nMémoire : ");
    print_number(information->memory_upper / 1024 + 1);
    print(" Mio\n");
    print_modules(information);
    read_disk();
    draw(information);
    print("Fin.\n");
    end(information->arguments);
}
