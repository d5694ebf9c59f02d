#ifndef VAINCANCEL_H
#define VAINCANCEL_H

/// In a program with this in it, CancelIoEx claims success and cancels nothing.
namespace vaincancel {

/// How often it was called so far.
int count();

} // namespace vaincancel

#endif
