// The state of the processor at a call and after it, exchanged with quevar_tool_call (call.S), which
// knows the offsets.
#pragma once
#include <cstddef>
#include <cstdint>

namespace quevar::tool {

struct alignas(32) CallState {
    const void *target;
    const void *stack; // copied to the stack, where it begins at 16 modulo 64
    std::size_t stack_bytes;
    std::uint64_t integer[6];   // rdi rsi rdx rcx r8 r9
    std::uint64_t rax;          // out
    std::uint64_t preserved[6]; // rbx rbp r12 r13 r14 r15, in and out
    std::uint64_t rsp[2];       // before and after
    std::uint32_t mxcsr[2];     // before and after, as the two below
    std::uint16_t x87_control[2];
    std::uint16_t x87_tags;               // after; 0xFFFF: all registers empty
    alignas(32) unsigned char ymm[8][32]; // in; 0 to 3 also out
};

extern "C" void quevar_tool_call(CallState *);

} // namespace quevar::tool
