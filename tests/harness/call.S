// void quevar_tool_call(CallState *): see call.hpp.
#define TARGET 0
#define STACK 8
#define STACK_BYTES 16
#define INTEGER 24
#define RAX 72
#define PRESERVED 80
#define RSP 128
#define MXCSR 144
#define X87_CONTROL 152
#define X87_TAGS 156
#define YMM 160

    // Where the callee cannot reach: of this thread, and not on the stack.
    .section .tbss, "awT", @nobits
    .balign 8
current:
    .zero 8
caller_rsp:
    .zero 8

    .text
    .globl quevar_tool_call
    .type quevar_tool_call, @function
quevar_tool_call:
    push %rbx
    push %rbp
    push %r12
    push %r13
    push %r14
    push %r15
    mov %rdi, %fs:current@tpoff
    mov %rsp, %fs:caller_rsp@tpoff
    stmxcsr MXCSR(%rdi)
    fnstcw X87_CONTROL(%rdi)

    mov %rdi, %rax
    mov STACK(%rax), %rsi
    mov STACK_BYTES(%rax), %rcx
    sub %rcx, %rsp
    and $-64, %rsp
    sub $48, %rsp
    mov %rsp, RSP(%rax)
    mov %rsp, %rdi
    rep movsb

    .irp n, 0, 1, 2, 3, 4, 5, 6, 7
    vmovups YMM + 32 * \n(%rax), %ymm\n
    .endr
    mov INTEGER(%rax), %rdi
    mov INTEGER + 8(%rax), %rsi
    mov INTEGER + 16(%rax), %rdx
    mov INTEGER + 24(%rax), %rcx
    mov INTEGER + 32(%rax), %r8
    mov INTEGER + 40(%rax), %r9
    mov PRESERVED(%rax), %rbx
    mov PRESERVED + 8(%rax), %rbp
    mov PRESERVED + 16(%rax), %r12
    mov PRESERVED + 24(%rax), %r13
    mov PRESERVED + 32(%rax), %r14
    mov PRESERVED + 40(%rax), %r15
    call *TARGET(%rax)

    mov %fs:current@tpoff, %rcx
    mov %rax, RAX(%rcx)
    mov %rsp, RSP + 8(%rcx)
    mov %rbx, PRESERVED(%rcx)
    mov %rbp, PRESERVED + 8(%rcx)
    mov %r12, PRESERVED + 16(%rcx)
    mov %r13, PRESERVED + 24(%rcx)
    mov %r14, PRESERVED + 32(%rcx)
    mov %r15, PRESERVED + 40(%rcx)
    .irp n, 0, 1, 2, 3
    vmovups %ymm\n, YMM + 32 * \n(%rcx)
    .endr

    mov %fs:caller_rsp@tpoff, %rsp
    stmxcsr MXCSR + 4(%rcx)
    fnstcw X87_CONTROL + 2(%rcx)
    fnstenv -32(%rsp)
    movzwl -24(%rsp), %eax
    mov %ax, X87_TAGS(%rcx)
    fninit
    fldcw X87_CONTROL(%rcx)
    ldmxcsr MXCSR(%rcx)
    vzeroupper
    pop %r15
    pop %r14
    pop %r13
    pop %r12
    pop %rbp
    pop %rbx
    ret
    .size quevar_tool_call, . - quevar_tool_call
    .section .note.GNU-stack, "", @progbits
