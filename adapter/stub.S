# Runs between the emulator's loader and the kernel: hands the kernel a record of our own making in place of the
# loader's. It lies on a page of its own behind the kernel, the record and its own fields behind it; the composer writes
# the record's address into the first instruction. 32-bit protected mode without paging, as the loader leaves it; no stack.

        .set    LOADER_RECORD_WORDS, 22         # 88 bytes; what follows them there is not the record's
        .set    HAS_ARGUMENTS_AND_MODULES, 0xC
        .set    HAS_FRAMEBUFFER, 0x1000

        # The record, as the kernel reads it.
        .set    FLAGS, 0
        .set    ARGUMENTS, 16
        .set    MODULE_COUNT, 20
        .set    MODULE_LIST, 24
        .set    FRAMEBUFFER, 88
        .set    PITCH, 96
        .set    WIDTH, 100
        .set    HEIGHT, 104
        .set    DEPTH_AND_TYPE, 108             # a byte each
        .set    COLOURS, 110                    # place and size of red, green and blue, a byte each
        # Ours, behind it.
        .set    ENTRY, 116
        .set    GIVEN_ARGUMENTS, 120
        .set    GIVEN_MODULE_COUNT, 124
        .set    GIVEN_MODULE_LIST, 128
        .set    GIVEN_WIDTH, 132                # 0: no mode is asked for
        .set    GIVEN_HEIGHT, 136

        .set    MULTIBOOT_MAGIC, 0x2BADB002
        .set    DISPLAY_INDEX, 0x1CE
        .set    PCI_ADDRESS, 0xCF8
        .set    PCI_DATA, 0xCFC
        .set    PCI_SLOT_0, 0x80000000
        .set    PCI_SLOT_32, 0x80010000
        .set    DISPLAY_ID, 0x11111234

        # The display's register `index` becomes ax.
        .macro  set_display index
        movw    %ax, %cx
        movw    $\index, %ax
        movw    $DISPLAY_INDEX, %dx
        outw    %ax, %dx
        movw    %cx, %ax
        incw    %dx
        outw    %ax, %dx
        .endm

        # eax becomes what stands in the register of the slot in esi.
        .macro  read_pci register
        leal    \register(%esi), %eax
        movw    $PCI_ADDRESS, %dx
        outl    %eax, %dx
        movw    $PCI_DATA, %dx
        inl     %dx, %eax
        .endm

        .text
        movl    $0, %ebp                        # the record's address, from the composer
        cld
        movl    %ebx, %esi
        movl    %ebp, %edi
        movl    $LOADER_RECORD_WORDS, %ecx
        rep movsl
        orl     $HAS_ARGUMENTS_AND_MODULES, FLAGS(%ebp)
        movl    GIVEN_ARGUMENTS(%ebp), %eax
        movl    %eax, ARGUMENTS(%ebp)
        movl    GIVEN_MODULE_COUNT(%ebp), %eax
        movl    %eax, MODULE_COUNT(%ebp)
        movl    GIVEN_MODULE_LIST(%ebp), %eax
        movl    %eax, MODULE_LIST(%ebp)
        cmpl    $0, GIVEN_WIDTH(%ebp)
        je      enter

        xorl    %eax, %eax
        set_display 4                           # off
        movl    GIVEN_WIDTH(%ebp), %eax
        movl    %eax, WIDTH(%ebp)
        set_display 1
        movl    GIVEN_HEIGHT(%ebp), %eax
        movl    %eax, HEIGHT(%ebp)
        set_display 2
        movl    $32, %eax
        set_display 3                           # bits a pixel
        movl    $0x41, %eax
        set_display 4                           # on, all of its memory in one piece, cleared

        movl    $PCI_SLOT_0, %esi
next_slot:
        read_pci 0
        cmpl    $DISPLAY_ID, %eax
        je      found
        addl    $0x800, %esi
        cmpl    $PCI_SLOT_32, %esi
        jb      next_slot
        jmp     enter
found:
        read_pci 0x10
        andl    $0xFFFFFFF0, %eax
        movl    %eax, FRAMEBUFFER(%ebp)
        movl    $0, FRAMEBUFFER + 4(%ebp)
        movl    GIVEN_WIDTH(%ebp), %eax
        shll    $2, %eax
        movl    %eax, PITCH(%ebp)
        movw    $0x0120, DEPTH_AND_TYPE(%ebp)   # 32 bits, red, green and blue at places of their own
        movl    $0x08080810, COLOURS(%ebp)
        movw    $0x0800, COLOURS + 4(%ebp)
        orl     $HAS_FRAMEBUFFER, FLAGS(%ebp)

enter:
        movl    $MULTIBOOT_MAGIC, %eax
        movl    %ebp, %ebx
        jmp     *ENTRY(%ebp)
        .balign 4, 0x90
