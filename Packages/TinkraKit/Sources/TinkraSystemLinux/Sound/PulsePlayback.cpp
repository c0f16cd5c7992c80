#include "TinkraSystemLinux/Sound/PulsePlayback.h"

#include "TinkraSystemLinux/Sound/PulseConnection.h"

#include <algorithm>
#include <condition_variable>
#include <cstring>
#include <mutex>

namespace Tinkra::System {

namespace {

constexpr std::chrono::seconds kRetryTime{1};

// What the server holds in advance carries us over a busy moment; it lets go of it when the stream ends.
constexpr std::uint32_t kBufferedMilliseconds = 1000;
constexpr std::uint32_t kRefillMilliseconds = 250;
constexpr std::uint32_t kStartMilliseconds = 20;

/// A recording as a stream of the server's, from its beginning.
class Stream {
public:
    Stream(PulseConnection& connection, const Recording& recording, bool loops);
    Stream(const Stream&) = delete;
    Stream& operator=(const Stream&) = delete;
    ~Stream();

    bool isOver() const { return m_isPlayed || !PA_STREAM_IS_GOOD(pa_stream_get_state(m_stream)); }
    bool isPlayed() const { return m_isPlayed; }

private:
    std::uint32_t bytes(std::uint32_t milliseconds) const;
    void write(std::size_t room);

    const Recording& m_recording;
    bool m_loops;
    std::size_t m_position = 0; ///< in bytes
    bool m_isPlayed = false; ///< to its end, when it does not loop
    pa_stream* m_stream;
};

Stream::Stream(PulseConnection& connection, const Recording& recording, bool loops)
    : m_recording(recording)
    , m_loops(loops)
{
    const pa_sample_spec format{PA_SAMPLE_S16LE, recording.rate, recording.channels};
    m_stream = pa_stream_new(connection.context(), "Alarm", &format, nullptr);
    const pa_buffer_attr buffer{
        .maxlength = static_cast<std::uint32_t>(-1),
        .tlength = bytes(kBufferedMilliseconds),
        .prebuf = bytes(kStartMilliseconds),
        .minreq = bytes(kRefillMilliseconds),
        .fragsize = static_cast<std::uint32_t>(-1),
    };
    pa_stream_set_write_callback(
        m_stream, [](pa_stream*, std::size_t room, void* self) { static_cast<Stream*>(self)->write(room); },
        this);
    pa_stream_connect_playback(m_stream, nullptr, &buffer, PA_STREAM_START_UNMUTED, nullptr, nullptr);
}

Stream::~Stream()
{
    pa_stream_set_write_callback(m_stream, nullptr, nullptr);
    pa_stream_disconnect(m_stream);
    pa_stream_unref(m_stream);
}

std::uint32_t Stream::bytes(std::uint32_t milliseconds) const
{
    return m_recording.rate * milliseconds / 1000 * 2 * m_recording.channels;
}

void Stream::write(std::size_t room)
{
    const auto* recorded = reinterpret_cast<const char*>(m_recording.samples.data());
    const std::size_t length = m_recording.samples.size() * sizeof(std::int16_t);
    while (room > 0 && m_position < length) {
        const auto part = std::min(room, length - m_position);
        if (pa_stream_write(m_stream, recorded + m_position, part, nullptr, 0, PA_SEEK_RELATIVE) < 0)
            return;
        room -= part;
        m_position += part;
        if (m_loops && m_position == length)
            m_position = 0;
    }
    if (room == 0 || m_loops)
        return;
    pa_stream_set_write_callback(m_stream, nullptr, nullptr);
    if (auto* drain = pa_stream_drain(
            m_stream, [](pa_stream*, int, void* self) { static_cast<Stream*>(self)->m_isPlayed = true; },
            this))
        pa_operation_unref(drain);
}

/// True when it was played to its end.
bool playOnce(const Recording& recording, bool loops, const std::stop_token& stop)
{
    PulseConnection connection;
    const std::stop_callback wakeUp(stop, [&connection] { connection.wakeUp(); });
    while (!connection.isReady()) {
        if (stop.stop_requested() || connection.isOver())
            return false;
        connection.turn();
    }
    const Stream stream(connection, recording, loops);
    while (!stop.stop_requested() && !connection.isOver() && !stream.isOver())
        connection.turn();
    return stream.isPlayed();
}

void play(const std::stop_token& stop, const std::shared_ptr<const Recording>& recording, bool loops)
{
    std::mutex mutex;
    std::condition_variable_any stopped;
    while (!stop.stop_requested() && !playOnce(*recording, loops, stop)) {
        std::unique_lock lock(mutex);
        stopped.wait_for(lock, stop, kRetryTime, [] { return false; });
    }
}

}

PulsePlayback::PulsePlayback(std::shared_ptr<const Recording> recording, bool loops)
    : m_thread([recording = std::move(recording), loops](
                   const std::stop_token& stop) { play(stop, recording, loops); })
{
}

}
