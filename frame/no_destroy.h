#ifndef QBO_FRAME_NO_DESTROY_H_
#define QBO_FRAME_NO_DESTROY_H_

#include <new>

namespace qbo {

// A process-wide object in static storage that is never destroyed: detach
// runs late in process exit (or at unload) and must still find it. Living
// in static storage, it also leaves nothing behind on the heap when a host
// unloads the library.
template <typename T>
T& NoDestroy() {
  alignas(T) static unsigned char storage[sizeof(T)];
  static T* object = new (storage) T;
  return *object;
}

}  // namespace qbo

#endif  // QBO_FRAME_NO_DESTROY_H_
