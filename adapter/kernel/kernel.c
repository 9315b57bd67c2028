// A small Multiboot kernel: tells on the first serial port what it was given, reads a sector of the first disk,
// draws on its screen, and ends as its arguments say: code=N (0 when they say nothing), fin=arret, fin=boucle,
// fin=extinction or fin=faute.
#include <stdint.h>

enum { MAGIC = 0x2BADB002, HAS_FRAMEBUFFER = 1 << 12 };
enum { SERIAL = 0x3F8, EXIT_PORT = 0xF4, POWER = 0x604, POWER_OFF = 0x2000 };
enum { DISK = 0x1F0, DISK_ERROR = 1, DISK_DATA = 8, DISK_BUSY = 0x80, DISK_ABSENT = 0xFF, READ_SECTOR = 0x20 };

struct module {
    uint32_t start, end;
    const char *arguments;
    uint32_t reserved;
};

struct information {
    uint32_t flags, memory_lower, memory_upper, boot_device;
    const char *arguments;
    uint32_t module_count;
    const struct module *modules;
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

// --- telling ---

static void tell_byte(char byte) {
    while ((read_port(SERIAL + 5) & 0x20) == 0) {
    }
    write_port(SERIAL, (uint8_t)byte);
}

static void tell(const char *text) {
    while (*text != '\0')
        tell_byte(*text++);
}

static void tell_number(uint32_t number) {
    if (number >= 10)
        tell_number(number / 10);
    tell_byte((char)('0' + number % 10));
}

static void tell_modules(const struct information *given) {
    for (uint32_t at = 0; at < given->module_count; ++at) {
        const struct module *module = &given->modules[at];
        uint32_t sum = 0;
        for (uint32_t byte = module->start; byte < module->end; ++byte)
            sum += *(const uint8_t *)byte;
        tell("Module ");
        tell_number(at);
        tell(module->start % 4096 == 0 ? " : " : " (hors page) : ");
        tell_number(module->end - module->start);
        tell(" octets, somme ");
        tell_number(sum);
        tell(", arguments [");
        tell(module->arguments);
        tell("]\n");
    }
}

// --- the disk ---

static void read_disk(void) {
    write_port(DISK + 6, 0xE0);  // the master, sectors by number
    if (read_port(DISK + 7) == 0 || read_port(DISK + 7) == DISK_ABSENT) {
        tell("Disque : aucun\n");
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
    tell("Disque, secteur 0 : [");
    for (int at = 0; at < 256; ++at) {
        const uint16_t pair = read_wide_port(DISK);
        if ((pair & 0xFF) != 0)
            tell_byte((char)pair);
        if (pair >> 8 != 0)
            tell_byte((char)(pair >> 8));
    }
    tell("]\n");
}

// --- the screen ---

// Red grows to the right, green downwards, a frame of white around it.
static void draw(const struct information *given) {
    if ((given->flags & HAS_FRAMEBUFFER) == 0) {
        tell("Écran : texte\n");
        return;
    }
    for (uint32_t y = 0; y < given->height; ++y) {
        uint32_t *line = (uint32_t *)((uint32_t)given->framebuffer + y * given->pitch);
        for (uint32_t x = 0; x < given->width; ++x) {
            const int is_frame = x == 0 || y == 0 || x == given->width - 1 || y == given->height - 1;
            line[x] = is_frame ? 0xFFFFFF : x * 255 / given->width << 16 | y * 255 / given->height << 8 | 0x40;
        }
    }
    tell("Écran : ");
    tell_number(given->width);
    tell(" x ");
    tell_number(given->height);
    tell(" x ");
    tell_number(given->depth);
    tell("\n");
}

// --- the end ---

// What stands behind the word in the arguments; null where it does not stand in them.
static const char *behind(const char *word, const char *arguments) {
    for (; *arguments != '\0'; ++arguments) {
        int length = 0;
        while (word[length] != '\0' && word[length] == arguments[length])
            ++length;
        if (word[length] == '\0')
            return arguments + length;
    }
    return 0;
}

static void end(const char *arguments) {
    if (behind("fin=faute", arguments))
        triple_fault();
    const int is_off = behind("fin=extinction", arguments) != 0;
    if (is_off)
        __asm__ volatile("outw %0, %1" : : "a"((uint16_t)POWER_OFF), "Nd"((uint16_t)POWER));
    if (is_off || behind("fin=arret", arguments))
        return;
    while (behind("fin=boucle", arguments))
        __asm__ volatile("pause");
    uint8_t code = 0;
    for (const char *digit = behind("code=", arguments); digit && *digit >= '0' && *digit <= '9'; ++digit)
        code = (uint8_t)(code * 10 + *digit - '0');
    write_port(EXIT_PORT, code);
}

void kernel(uint32_t magic, const struct information *given) {
    tell("Un noyau Multiboot de 32 bits, sur une vraie machine.\nChargeur : ");
    tell(magic == MAGIC ? "Multiboot" : "inconnu");
    tell("\nArguments : [");
    tell(given->arguments);
    tell("]\nMémoire : ");
    tell_number(given->memory_upper / 1024 + 1);
    tell(" Mio\n");
    tell_modules(given);
    read_disk();
    draw(given);
    tell("Fin.\n");
    end(given->arguments);
}
