# The demonstration's kernel: a Multiboot kernel that writes its name to the screen and to the serial port and
# halts. It runs in 32-bit protected mode, which the loader has set.

        .set    MAGIC, 0x1BADB002
        .set    FLAGS, 0x3                      # modules on page boundaries, memory information
        .set    SCREEN, 0xB8000
        .set    GREY_ON_BLACK, 0x07
        .set    SERIAL, 0x3F8
        .set    LINE_STATUS, SERIAL + 5
        .set    TRANSMITTER_EMPTY, 0x20

        .section .multiboot, "a"
        .align  4
        .long   MAGIC
        .long   FLAGS
        .long   -(MAGIC + FLAGS)

        .section .text
        .globl  start
start:
        cli
        cld
        mov     $stack_top, %esp
        mov     $text, %esi
        mov     $SCREEN, %edi
next:
        lodsb
        test    %al, %al
        jz      done
        call    send
        cmp     $'\n', %al
        je      next
        mov     $GREY_ON_BLACK, %ah
        stosw
        jmp     next
done:
        cli
        hlt
        jmp     done

# Waits until the serial port is ready and sends the character in al. Changes bl and edx.
send:
        mov     %al, %bl
        mov     $LINE_STATUS, %edx
wait:
        in      %dx, %al
        test    $TRANSMITTER_EMPTY, %al
        jz      wait
        mov     $SERIAL, %edx
        mov     %bl, %al
        out     %al, %dx
        ret

        .section .rodata
text:
        .asciz  "Veldrane : noyau de demonstration\n"

        .section .bss
        .align  16
        .skip   4096
stack_top:
