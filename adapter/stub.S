# Runs between the emulator's loader and the kernel: completes the loader's Multiboot information, sets the display
# mode and enters the kernel. boot_image.cpp puts this code on the page after the kernel, puts the record StubRecord
# directly after the code, and writes the record's address into the first instruction. The processor is in 32-bit protected
# mode without paging; ebx is the address of the information, which announces arguments and modules in any case. There
# is no stack.

        .set    WIDTH, 44                       # in StubRecord; 0: keep the text screen
        .set    KERNEL_ENTRY, 60                # in StubRecord
        .set    FLAGS, 0                        # in the Multiboot information
        .set    HAS_FRAMEBUFFER, 0x1000
        .set    ARGUMENTS, 16                   # in the Multiboot information; 3 words: arguments, module count, modules
        .set    FRAMEBUFFER, 88                 # in the Multiboot information: 7 words
        .set    LOADED_BY_MULTIBOOT, 0x2BADB002

        .set    DISPLAY_INDEX, 0x1CE            # a port; the data port is the next one
        .set    DISPLAY_STEPS, 5
        .set    PCI_ADDRESS, 0xCF8
        .set    PCI_DATA, 0xCFC
        .set    DISPLAY_BASE_ADDRESS, 0x80001010  # slot 2, as in the emulator's options; register 0x10
        .set    BASE_ADDRESS_MASK, 0xFFFFFFF0

        .text
        movl    $0, %ebp                        # the record's address, written by boot_image.cpp
        movl    %ebp, %esi                      # esi moves through the record
        cld
        leal    ARGUMENTS(%ebx), %edi
        movl    $3, %ecx
        rep movsl
        cmpl    $0, WIDTH(%ebp)
        je      enter

        movl    $DISPLAY_STEPS, %ecx
next:
        movw    $DISPLAY_INDEX, %dx
        outsw
        incw    %dx
        outsw
        loop    next
        movl    $DISPLAY_BASE_ADDRESS, %eax
        movw    $PCI_ADDRESS, %dx
        outl    %eax, %dx
        movw    $PCI_DATA, %dx
        inl     %dx, %eax
        andl    $BASE_ADDRESS_MASK, %eax
        movl    %eax, (%esi)
        leal    FRAMEBUFFER(%ebx), %edi
        movl    $7, %ecx
        rep movsl
        orl     $HAS_FRAMEBUFFER, FLAGS(%ebx)

enter:
        movl    $LOADED_BY_MULTIBOOT, %eax
        jmp     *KERNEL_ENTRY(%ebp)
        .balign 4, 0x90
