// The pieces of the C++ run-time that the DLL brings itself. The standard library's own operator
// new drags in the exception machinery, over 100 KiB that a library without exceptions never uses.
#include <windows.h>

#include <cstddef>
#include <new>

namespace {

void* Allocate(std::size_t size) { return HeapAlloc(GetProcessHeap(), 0, size ? size : 1); }

void Release(void* block) {
  if (block) HeapFree(GetProcessHeap(), 0, block);
}

}  // namespace

const std::nothrow_t std::nothrow{};

// The library allocates with std::nothrow alone and answers a null pointer; the throwing form
// exists because a virtual destructor's table refers to its counterpart.
void* operator new(std::size_t size) {
  void* block = Allocate(size);
  if (!block) TerminateProcess(GetCurrentProcess(), STATUS_NO_MEMORY);
  return block;
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept { return Allocate(size); }
void* operator new[](std::size_t size) { return operator new(size); }
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept { return Allocate(size); }
void operator delete(void* block) noexcept { Release(block); }
void operator delete[](void* block) noexcept { Release(block); }
void operator delete[](void* block, std::size_t) noexcept { Release(block); }
void operator delete(void* block, std::size_t) noexcept { Release(block); }
void operator delete(void* block, const std::nothrow_t&) noexcept { Release(block); }

extern "C" void __cxa_pure_virtual() { TerminateProcess(GetCurrentProcess(), STATUS_NO_MEMORY); }

// Loading creates nothing and unloading frees nothing: ZELK_HWInit and ZELK_Free are the library's
// life.
extern "C" BOOL WINAPI DllMain(HINSTANCE, DWORD, LPVOID) { return TRUE; }
