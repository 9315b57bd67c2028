// A kernel whose shape the build selects: its header, its segments, its entry. It checks that it was loaded as its
// file demands, and ends with exit code 77, or 78 with a framebuffer of 800 x 600. The first character of its
// arguments selects more: b writes behind its memory first, f writes 64 KiB to the serial port and ends with 0, r
// resets the machine, 6 halts in 64-bit code.

#ifndef FLAGS
#define FLAGS 3
#endif
#ifndef MODE
#define MODE 0
#endif
#ifndef OFFSET  // of virtual addresses
#define OFFSET 0
#endif

        .text
#ifndef NO_HEADER
header: .long   0x1BADB002, FLAGS, -(0x1BADB002 + FLAGS)
        .long   header, header, 0, _end, start
        .long   MODE, 0, 0, 0
#endif
        .skip   64                              // the entry is not at the start
        .globl  start
        .set    entry_physical, start - OFFSET
        .globl  entry_physical
start:
        cmpl    $0x2BADB002, %eax
        jne     wrong
        movl    16(%ebx), %esi
        movb    (%esi), %dl
        cmpb    $'b', %dl
        jne     1f
        movl    $_end - OFFSET, %edi
        movl    $0x10000, %ecx
        movb    $0xFF, %al
        rep stosb
1:      movl    (%ebx), %eax
        andl    $0x4D, %eax
        cmpl    $0x4D, %eax                     // memory, arguments, modules, memory map
        jne     wrong
        cmpl    $0x12345678, data - OFFSET
        jne     wrong
        cmpl    $0, zero - OFFSET
        jne     wrong
        cmpb    $'f', %dl
        je      flood
        cmpb    $'6', %dl
        je      long_mode
        movb    $77, %al
        cmpb    $'r', %dl
        je      reset
        testl   $0x1000, (%ebx)
        jz      end
        cmpl    $800, 100(%ebx)
        jne     wrong
        movb    $78, %al
end:    outb    %al, $0xF4
stop:   cli
        hlt
        jmp     stop
wrong:  movb    $1, %al
        jmp     end
reset:  movb    $0xFE, %al
        outb    %al, $0x64
        jmp     stop

flood:  movl    $65536, %ecx
        movw    $0x3F8, %dx
        movb    $'.', %al
2:      outb    %al, %dx
        loop    2b
        movb    $0, %al
        jmp     end

long_mode:
        movl    $level_3 + 3 - OFFSET, level_4 - OFFSET
        movl    $level_2 + 3 - OFFSET, level_3 - OFFSET
        movl    $0x83, level_2 - OFFSET         // the first 2 MiB
        movl    $level_4 - OFFSET, %eax
        movl    %eax, %cr3
        movl    $0x20, %eax                     // physical address extension
        movl    %eax, %cr4
        movl    $0xC0000080, %ecx
        rdmsr
        orl     $0x100, %eax                    // long mode
        wrmsr
        movl    $0x80000001, %eax               // paging
        movl    %eax, %cr0
        lgdt    table_place - OFFSET
        ljmp    $8, $in_64_bits - OFFSET
        .code64
in_64_bits:
        cli
        hlt
        jmp     in_64_bits

        .data
data:   .long   0x12345678
        .align  8
table:  .quad   0, 0x00AF9A000000FFFF           // 64-bit code
table_place:
        .word   15
        .long   table - OFFSET

        .bss
        .align  4096
level_4: .skip  4096
level_3: .skip  4096
level_2: .skip  4096
zero:   .skip   65536
        .section .note.GNU-stack, "", @progbits
