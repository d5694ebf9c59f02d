#ifndef INTERRUPTION_H
#define INTERRUPTION_H

/// Ctrl-C and its like as a question instead of a sudden end, so that everything that was started
/// can be stopped in order.
namespace interruption {

void watch();
bool requested();

} // namespace interruption

#endif
