#pragma once

// Containers for media samples read from a file; owned by whoever asked for the samples, on one
// thread.

#include "MovParserLib/FileBuffer.h"

#include <deque>
#include <memory>

namespace Orvex::MovParserLib {

/// The bytes of one sample with its times, in units of its track's time scale.
class SampleBuffer : public FileBuffer
{
public:
    SampleBuffer() = default;
    SampleBuffer(SampleBuffer &other) = default;
    SampleBuffer &operator=(SampleBuffer &other) = default;
    ~SampleBuffer() override;

    void printInfos() const;
    void printDatas() const;

    qint64 presentationTime = 0;
    qint64 decodeTime = 0;
    quint8 isSync = 0;
};

/// A queue of samples that owns what it holds. Copying hands the queue over, as with the block.
class SamplePoolBuffer : public SampleBuffer
{
public:
    SamplePoolBuffer() = default;
    SamplePoolBuffer(SamplePoolBuffer &other);
    SamplePoolBuffer &operator=(SamplePoolBuffer &other);

    void put(std::unique_ptr<SampleBuffer> sample) { m_queue.push_back(std::move(sample)); }
    /// The front entry, null when the pool is empty.
    std::unique_ptr<SampleBuffer> take();
    size_t count() const { return m_queue.size(); }

    void printInfos() const;
    void printDatas() const;

    quint8 flags[4] = {0, 0, 0, 1};
    quint32 value = 0;

private:
    void copyFlags(const SamplePoolBuffer &other);

    std::deque<std::unique_ptr<SampleBuffer>> m_queue;
};

} // namespace Orvex::MovParserLib
