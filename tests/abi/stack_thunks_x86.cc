// Calls a function the way a 32-bit host may: arguments pushed on
// a stack that is only 4-byte aligned, then reports how far the call moved
// esp and whether the callee kept the registers it must preserve.
//
//   int32_t QboCallWithStack(const void* fn, const uint32_t* args,
//                            int32_t argc, int32_t misalign,
//                            int32_t* report);                    (cdecl)
//
// Before the call instruction esp is `misalign` bytes below a 16-byte
// boundary (0 = the alignment GCC assumes). report[0] = esp after the call
// minus esp before the arguments were pushed: 0 when the callee popped them,
// -4 * argc when it left them to the caller. report[1] = 1 when ebx, esi
// and edi came back unchanged (a lost ebp crashes). Returns the callee's eax.
#if defined(__i386__)

// COFF names carry a leading underscore and declare their type with .def;
// ELF names do not and use .type.
#if defined(_WIN32)
#define QBO_THUNK_HEAD \
  ".globl _QboCallWithStack\n.def _QboCallWithStack; .scl 2; .type 32; .endef\n_QboCallWithStack:\n"
#else
#define QBO_THUNK_HEAD \
  ".globl QboCallWithStack\n.type QboCallWithStack, @function\nQboCallWithStack:\n"
#endif

__asm__(".text\n" QBO_THUNK_HEAD R"(
        pushl   %ebp
        movl    %esp, %ebp
        pushl   %ebx
        pushl   %esi
        pushl   %edi
        subl    $4, %esp                /* -16(%ebp): esp before the pushes */

        /* Padding d = (misalign - 4 * argc) mod 16 below a 16-byte boundary,
         * so that after the pushes esp = boundary - misalign (mod 16). */
        movl    16(%ebp), %ecx
        shll    $2, %ecx
        movl    20(%ebp), %eax
        subl    %ecx, %eax
        andl    $15, %eax
        andl    $-16, %esp
        subl    %eax, %esp

        movl    %esp, -16(%ebp)
        movl    %esp, %edi
        movl    12(%ebp), %esi
        movl    16(%ebp), %ecx
1:      testl   %ecx, %ecx
        jz      2f
        pushl   -4(%esi,%ecx,4)
        decl    %ecx
        jmp     1b
2:      movl    $0x5EB1E5, %ebx
        call    *8(%ebp)

        movl    24(%ebp), %edx
        movl    %esp, %ecx
        subl    -16(%ebp), %ecx
        movl    %ecx, (%edx)
        movl    $0, 4(%edx)
        cmpl    $0x5EB1E5, %ebx
        jne     3f
        cmpl    12(%ebp), %esi
        jne     3f
        cmpl    -16(%ebp), %edi
        jne     3f
        movl    $1, 4(%edx)
3:      leal    -12(%ebp), %esp
        popl    %edi
        popl    %esi
        popl    %ebx
        popl    %ebp
        ret
)");

#endif  // __i386__
