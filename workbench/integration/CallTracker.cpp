#include "CallTracker.h"

namespace workbench {

using Kind = TrafficEntry::Kind;

namespace {

template <typename Key, typename Value>
const Value *valueOf(const std::map<Key, Value> &map, Key key)
{
    const auto found = map.find(key);
    return found == map.cend() ? nullptr : &found->second;
}

} // namespace

void CallTracker::add(TrafficEntry &entry)
{
    entry.call = callOf(entry);
    if (!entry.isOutput()) {
        m_open.resize(static_cast<size_t>(entry.depth) + 1);
        m_open.back() = entry.call;
    }
    if (entry.kind == Kind::Sent && entry.accepted) {
        m_commands[entry.request] = {entry.sequence, entry.call, entry.elapsed, -1};
        ++m_calls[entry.call].commands;
        ++m_unanswered;
    } else if (entry.kind == Kind::Answered) {
        noteAnswer(entry);
    }
}

int CallTracker::callOf(const TrafficEntry &entry)
{
    if (entry.kind == Kind::Answered) {
        const Command *const sent = command(entry.request);
        return sent ? sent->call : newCall(entry);
    }
    const auto depth = static_cast<size_t>(entry.depth);
    return entry.isOutput() && depth > 0 && depth <= m_open.size() ? m_open[depth - 1]
                                                                   : newCall(entry);
}

int CallTracker::newCall(const TrafficEntry &entry)
{
    m_calls[++m_lastCall].sequence = entry.sequence;
    return m_lastCall;
}

/// Only the first answer to a command counts; others may follow.
void CallTracker::noteAnswer(const TrafficEntry &entry)
{
    const auto sent = m_commands.find(entry.request);
    if (sent == m_commands.end() || sent->second.took >= 0)
        return;
    sent->second.took = entry.elapsed - sent->second.sent;
    --m_unanswered;
    const auto call = m_calls.find(sent->second.call);
    if (call != m_calls.end())
        ++call->second.answered;
}

void CallTracker::forgetBefore(quint64 sequence)
{
    while (!m_commands.empty() && m_commands.begin()->second.sequence < sequence) {
        m_unanswered -= m_commands.begin()->second.took < 0;
        m_commands.erase(m_commands.begin());
    }
    while (!m_calls.empty() && m_calls.begin()->second.sequence < sequence)
        m_calls.erase(m_calls.begin());
}

const CallTracker::Call *CallTracker::call(int number) const
{
    return valueOf(m_calls, number);
}

const CallTracker::Command *CallTracker::command(quint64 request) const
{
    return valueOf(m_commands, request);
}

} // namespace workbench
