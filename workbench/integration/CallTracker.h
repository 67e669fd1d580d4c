#pragma once

#include "TrafficEntry.h"

#include <map>
#include <vector>

namespace workbench {

/// Assigns the entries of the traffic to calls and counts the answers to commands.
///
/// Each entry gets the number of the call, connection or event that caused it: an answer that of
/// its command, a signal that of the call or answer inside which it was emitted.
class CallTracker
{
public:
    struct Call
    {
        quint64 sequence = 0; ///< of its first entry
        int commands = 0;     ///< accepted commands
        int answered = 0;
    };
    struct Command
    {
        quint64 sequence = 0;
        int call = 0;
        qint64 sent = 0;  ///< TrafficEntry::elapsed
        qint64 took = -1; ///< milliseconds until the first answer; negative: no answer yet
    };

    /// Sets the call of an entry. Call it for each entry, in the order of their sequence numbers.
    void add(TrafficEntry &entry);
    /// Removes the calls and commands whose entries were dropped.
    /// @param sequence of the oldest remaining entry
    void forgetBefore(quint64 sequence);

    /// @return null for an unknown or removed call or command
    const Call *call(int number) const;
    const Command *command(quint64 request) const;
    /// @return the number of accepted commands without an answer
    int unanswered() const { return m_unanswered; }

private:
    int callOf(const TrafficEntry &entry);
    int newCall(const TrafficEntry &entry);
    void noteAnswer(const TrafficEntry &entry);

    std::map<int, Call> m_calls;           ///< by number
    std::map<quint64, Command> m_commands; ///< by request
    std::vector<int> m_open;               ///< number of the latest call at each depth
    int m_lastCall = 0;
    int m_unanswered = 0;
};

} // namespace workbench
