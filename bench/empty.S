// quevar_bench_empty: returns at once, whatever it is called as. A result in memory is wanted at the address in rax.
    .text
    .globl quevar_bench_empty
    .type quevar_bench_empty, @function
    .balign 64
quevar_bench_empty:
    mov %rdi, %rax
    ret
    .size quevar_bench_empty, . - quevar_bench_empty
    .section .note.GNU-stack, "", @progbits
