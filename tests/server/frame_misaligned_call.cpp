#include "server/frame_misaligned_call.h"

#ifndef _WIN64

// Copies the words to a stack that is aligned and then moved off, and calls; the function takes
// them off itself.
asm(R"(
    .text
    .globl _call_on_misaligned_stack
_call_on_misaligned_stack:
    pushl %ebp
    movl %esp, %ebp
    pushl %esi
    pushl %edi
    movl 16(%ebp), %ecx
    leal 0(,%ecx,4), %eax
    subl %eax, %esp
    andl $-16, %esp
    subl $16, %esp
    addl 20(%ebp), %esp
    movl %esp, %edi
    movl 12(%ebp), %esi
    rep movsl
    call *8(%ebp)
    leal -8(%ebp), %esp
    popl %edi
    popl %esi
    popl %ebp
    ret
)");

extern "C" ULONG call_on_misaligned_stack(const void* function, const ULONG* words, ULONG count,
                                          ULONG offset_bytes);

namespace qv::tests {

ULONG call_misaligned(void* object, std::size_t slot, std::vector<ULONG> words,
                      unsigned offset_bytes) {
  words.insert(words.begin(), word(object));
  const void* const* functions = *static_cast<const void* const* const*>(object);
  return call_on_misaligned_stack(functions[slot], words.data(), static_cast<ULONG>(words.size()),
                                  offset_bytes);
}

}  // namespace qv::tests

#endif
