# Runs between the emulator's loader and the kernel: completes the Multiboot information, sets the display mode
# and enters the kernel. boot_image.cpp composes the information, puts this code on a page after the kernel and
# the information right after the code, and writes the information's address into the first instruction. The
# processor is in 32-bit protected mode without paging. There is no stack.

        # Offsets in the record MultibootInformation of boot_image.cpp.
        .set    FLAGS, 0
        .set    FRAMEBUFFER, 88
        .set    WIDTH, 100                      # 0: keep the text screen
        .set    HEIGHT, 104
        .set    KERNEL_ENTRY, 116

        .set    HAS_ARGUMENTS_AND_MODULES, 0xC
        .set    HAS_FRAMEBUFFER, 0x1000
        .set    LOADED_BY_MULTIBOOT, 0x2BADB002

        # The display's registers are accessed through an index port and the data port after it.
        .set    DISPLAY_INDEX, 0x1CE
        .set    DISPLAY_WIDTH, 1
        .set    DISPLAY_HEIGHT, 2
        .set    DISPLAY_BITS_PER_PIXEL, 3
        .set    DISPLAY_ENABLE, 4
        .set    DISPLAY_OFF, 0
        .set    DISPLAY_ON, 0x41                # on, cleared, with a linear framebuffer

        .set    PCI_ADDRESS, 0xCF8
        .set    PCI_DATA, 0xCFC
        .set    PCI_SLOT_0, 0x80000000
        .set    PCI_SLOT_BYTES, 0x800
        .set    PCI_SLOT_32, PCI_SLOT_0 + 32 * PCI_SLOT_BYTES
        .set    PCI_ID, 0
        .set    PCI_BASE_ADDRESS, 0x10
        .set    BASE_ADDRESS_MASK, 0xFFFFFFF0
        .set    DISPLAY_ID, 0x11111234

        # Sets the display's register `index` to ax. Changes cx and dx.
        .macro  set_display index
        movw    %ax, %cx
        movw    $\index, %ax
        movw    $DISPLAY_INDEX, %dx
        outw    %ax, %dx
        movw    %cx, %ax
        incw    %dx
        outw    %ax, %dx
        .endm

        # Reads a register of the PCI slot in esi into eax. Changes dx.
        .macro  read_pci register
        leal    \register(%esi), %eax
        movw    $PCI_ADDRESS, %dx
        outl    %eax, %dx
        movw    $PCI_DATA, %dx
        inl     %dx, %eax
        .endm

        # Copies 32-bit words from the loader's information (its address is in ebx) to the same offset of ours
        # (in ebp). Changes ecx, esi and edi.
        .macro  copy_words offset, count
        leal    \offset(%ebx), %esi
        leal    \offset(%ebp), %edi
        movl    $\count, %ecx
        rep movsl
        .endm

        .text
        movl    $0, %ebp                        # the information's address, written by boot_image.cpp
        cld
        copy_words 0, 4                         # up to the arguments
        copy_words 28, 15                       # after the modules; the loader's record has 88 bytes
        orl     $HAS_ARGUMENTS_AND_MODULES, FLAGS(%ebp)
        cmpl    $0, WIDTH(%ebp)
        je      enter

        movl    $DISPLAY_OFF, %eax
        set_display DISPLAY_ENABLE
        movl    WIDTH(%ebp), %eax
        set_display DISPLAY_WIDTH
        movl    HEIGHT(%ebp), %eax
        set_display DISPLAY_HEIGHT
        movl    $32, %eax
        set_display DISPLAY_BITS_PER_PIXEL
        movl    $DISPLAY_ON, %eax
        set_display DISPLAY_ENABLE

        movl    $PCI_SLOT_0, %esi
next_slot:
        read_pci PCI_ID
        cmpl    $DISPLAY_ID, %eax
        je      found
        addl    $PCI_SLOT_BYTES, %esi
        cmpl    $PCI_SLOT_32, %esi
        jb      next_slot
        jmp     enter
found:
        read_pci PCI_BASE_ADDRESS
        andl    $BASE_ADDRESS_MASK, %eax
        movl    %eax, FRAMEBUFFER(%ebp)
        orl     $HAS_FRAMEBUFFER, FLAGS(%ebp)

enter:
        movl    $LOADED_BY_MULTIBOOT, %eax
        movl    %ebp, %ebx
        jmp     *KERNEL_ENTRY(%ebp)
        .balign 4, 0x90
