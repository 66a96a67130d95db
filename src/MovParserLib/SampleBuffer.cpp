#include "MovParserLib/SampleBuffer.h"

#include <algorithm>
#include <cstdio>

namespace Orvex::MovParserLib {

SampleBuffer::~SampleBuffer() = default;

void SampleBuffer::printInfos() const
{
    std::printf("Sample: %lld bytes, presented at %lld, decoded at %lld, sync %d\n",
                static_cast<long long>(dataSize()), static_cast<long long>(presentationTime),
                static_cast<long long>(decodeTime), isSync);
}

void SampleBuffer::printDatas() const
{
    const char *data = getData();
    for (qint64 i = 0; data && i < dataSize(); ++i)
        std::printf("%02x%s", uchar(data[i]), i % 16 == 15 ? "\n" : " ");
    std::printf("\n");
}

SamplePoolBuffer::SamplePoolBuffer(SamplePoolBuffer &other)
    : SampleBuffer(other)
    , m_queue(std::move(other.m_queue))
{
    other.m_queue.clear();
    copyFlags(other);
}

SamplePoolBuffer &SamplePoolBuffer::operator=(SamplePoolBuffer &other)
{
    if (this == &other)
        return *this;
    SampleBuffer::operator=(other);
    m_queue = std::move(other.m_queue);
    other.m_queue.clear();
    copyFlags(other);
    return *this;
}

void SamplePoolBuffer::copyFlags(const SamplePoolBuffer &other)
{
    std::copy(std::begin(other.flags), std::end(other.flags), std::begin(flags));
    value = other.value;
}

std::unique_ptr<SampleBuffer> SamplePoolBuffer::take()
{
    if (m_queue.empty())
        return nullptr;
    std::unique_ptr<SampleBuffer> front = std::move(m_queue.front());
    m_queue.pop_front();
    return front;
}

void SamplePoolBuffer::printInfos() const
{
    for (const auto &sample : m_queue)
        sample->printInfos();
}

void SamplePoolBuffer::printDatas() const
{
    for (const auto &sample : m_queue)
        sample->printDatas();
}

} // namespace Orvex::MovParserLib
