/* The fixed map of CBilinear.h, as MakeFixedMap wrote it. Hosts may write to it. */
    .data
    .balign 64
    .globl FMMTbl
    .type FMMTbl, @object
FMMTbl:
    .incbin "FMMTbl.bin"
    .size FMMTbl, . - FMMTbl

    .section .note.GNU-stack, "", @progbits
