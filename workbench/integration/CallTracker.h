#pragma once

#include "TrafficEntry.h"

#include <map>
#include <vector>

namespace workbench {

/// Which entries of the traffic belong to one call, and which commands are answered.
///
/// Entries get the number of the call, connection or event that caused them. An answer has the
/// number of its command, and a signal the number of what it was emitted in.
class CallTracker
{
public:
    struct Call
    {
        quint64 sequence = 0; ///< of the entry that began it
        int asked = 0;        ///< accepted commands
        int answered = 0;
    };
    struct Command
    {
        quint64 sequence = 0;
        int call = 0;
        qint64 sent = 0;  ///< TrafficEntry::elapsed
        qint64 took = -1; ///< milliseconds until the first answer; negative: none came yet
    };

    /// Sets the entry's call. Entries come in the order of their sequence.
    void add(TrafficEntry &entry);
    void forgetBefore(quint64 sequence);

    /// @return null for an unknown or forgotten one
    const Call *call(int number) const;
    const Command *command(quint64 request) const;
    /// Accepted commands without an answer.
    int unanswered() const { return m_unanswered; }

private:
    int callOf(const TrafficEntry &entry);
    int newCall(const TrafficEntry &entry);
    void noteAnswer(const TrafficEntry &entry);

    std::map<int, Call> m_calls;           ///< by number
    std::map<quint64, Command> m_commands; ///< by request
    std::vector<int> m_open;               ///< number of the last input by its depth
    int m_lastCall = 0;
    int m_unanswered = 0;
};

} // namespace workbench
