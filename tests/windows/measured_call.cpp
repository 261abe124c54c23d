// The measuring call itself; only assembly sees the stack pointer on both sides of a call.
#include "tests/windows/measured_call.h"

// Frame: 8 function, 12 arguments, 16 count, 20 padding, 24 outcome; -16 the stack pointer before the pushes.
__asm__(R"(
    .text
    .globl _measureCall
_measureCall:
    push %ebp
    mov %esp, %ebp
    push %ebx
    push %esi
    push %edi
    sub $4, %esp
    sub 20(%ebp), %esp
    mov %esp, -16(%ebp)
    mov 12(%ebp), %esi
    mov 16(%ebp), %ecx
1:  jecxz 2f
    push -4(%esi,%ecx,4)
    dec %ecx
    jmp 1b
2:  mov $0x0B0B0B0B, %ebx
    mov $0x51515151, %esi
    mov $0x0D1D1D1D, %edi
    call *8(%ebp)
    mov 24(%ebp), %ecx
    mov %eax, (%ecx)
    mov -16(%ebp), %eax
    sub %esp, %eax
    mov %eax, 4(%ecx)
    xor $0x0B0B0B0B, %ebx
    xor $0x51515151, %esi
    xor $0x0D1D1D1D, %edi
    or %ebx, %esi
    or %esi, %edi
    mov %edi, 8(%ecx)
    lea -12(%ebp), %esp
    pop %edi
    pop %esi
    pop %ebx
    pop %ebp
    ret
)");
