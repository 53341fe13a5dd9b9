// Tells where a run stood when it ends in another way than by its own will: a crash, a report
// of a sanitizer, or a step that does not come to an end.
#pragma once

#include <cstdint>

/// `log` outlives the program. From now on the end of the process prints seed, step and log.
void StartAlarm(std::uint64_t seed, const char* log);

/// A step begins; it must be over in `seconds`.
void SetAlarm(long step, unsigned seconds);

/// No step is under way.
void StopAlarm();
