# The kernel's Multiboot header and entry point. The header requests a screen of 640 x 480.

        .set    MAGIC, 0x1BADB002
        .set    FLAGS, 0x7                      # modules on page boundaries, memory information, a mode

        .section .multiboot, "a"
        .align  4
        .long   MAGIC, FLAGS, -(MAGIC + FLAGS)
        .long   0, 0, 0, 0, 0                   # no addresses: they are in the ELF file
        .long   0, 640, 480, 32                 # graphics

        .text
        .globl  start
start:
        movl    $stack_top, %esp
        pushl   %ebx
        pushl   %eax
        call    kernel
halt:
        cli
        hlt
        jmp     halt

        .lcomm  stack, 16384
        .set    stack_top, stack + 16384
        .section .note.GNU-stack, "", @progbits
