#include "engine/ffmpeg/Demuxer.h"

#include "engine/ffmpeg/StreamFactsReader.h"

#include <fmt/format.h>

extern "C" {
#include <libavformat/avformat.h>
}

#include <algorithm>
#include <string_view>

namespace EngineBackend {

namespace {

// Left out are play lists and other formats that lead to further files, single pictures, and plain text.
constexpr auto containers =
    "mov,mp4,m4a,3gp,3g2,mj2,matroska,webm,avi,mpegts,mpegtsraw,mpeg,vob,asf,asf_o,flv,"
    "live_flv,ogg,nut,mxf,gxf,lxf,dv,rm,wtv,ivf,obu,h264,hevc,vvc,m4v,mpegvideo,mjpeg,"
    "mjpeg_2000,vc1,vc1test,av1,h263,dirac,cavsvideo,yuv4mpegpipe,swf,nsv,roq,bink,"
    "smk,fli,avs,amv,ea,thp,4xm,wav,w64,mp3,aac,ac3,eac3,flac,aiff,caf,amr,dts,ape,tta,"
    "wv,au,gif,apng,webp_anim,r3d,ty,pva,film_cpk,mtv,mv,mvi,rl2,bfi,c93,dxa,hnm,idcin";

} // namespace

Result<std::unique_ptr<Demuxer>> Demuxer::open(std::unique_ptr<IByteSource> source, const std::string& name) {
    auto opened = OpenContainer::open(std::move(source), name, {.formats = containers});
    if (!opened)
        return tl::unexpected(opened.error());
    std::unique_ptr<Demuxer> demuxer(new Demuxer(std::move(*opened)));
    if (auto completed = demuxer->completeFacts(); !completed)
        return tl::unexpected(completed.error());
    return demuxer;
}

Result<void> Demuxer::completeFacts() {
    if (!isHeaderComplete(context()))
        // A failure leaves facts that the header told; whether they are enough is for the reader to find out.
        (void)avformat_find_stream_info(&context(), nullptr);
    if (container->deadline().isPassed())
        return failure(ErrorKind::OutOfTime, fmt::format("{}: looking into it took too long", name()));
    readFacts();
    return {};
}

void Demuxer::readFacts() {
    origins = findOrigins(context());
    for (unsigned i = 0; i < context().nb_streams; ++i) {
        StreamFacts& read = facts.emplace_back(readStreamFacts(context(), streamOf(static_cast<int>(i))));
        read.startTime -= read.timeBase * origins[i];
    }
}

std::string Demuxer::format() const {
    return context().iformat->name;
}

TimeStamps Demuxer::timeStamps() const {
    const std::string_view name = context().iformat->name;
    if ((context().iformat->flags & AVFMT_NOTIMESTAMPS) != 0 || name == "avi")
        return TimeStamps::DecodeOnly;
    return name == "mpeg" || name == "mpegts" ? TimeStamps::Sparse : TimeStamps::Presentation;
}

std::optional<Rational> Demuxer::duration() const {
    if (context().duration == AV_NOPTS_VALUE || context().duration < 0)
        return std::nullopt;
    return Rational(context().duration, AV_TIME_BASE);
}

const AVStream& Demuxer::stream(int index) const {
    return streamOf(index);
}

AVStream& Demuxer::streamOf(int index) const {
    return *context().streams[index];
}

void Demuxer::selectStream(int index) {
    selected = index;
    for (unsigned i = 0; i < context().nb_streams; ++i)
        context().streams[i]->discard = static_cast<int>(i) == index ? AVDISCARD_DEFAULT : AVDISCARD_ALL;
}

PacketPtr Demuxer::readPacket() {
    PacketPtr packet = makePacket();
    isFresh = false;
    int status = 0;
    while (!container->deadline().isPassed()) {
        status = av_read_frame(&context(), packet.get());
        if (status < 0)
            break;
        if (packet->stream_index == selected) {
            stop = ReadingStop::None;
            return packet;
        }
        av_packet_unref(packet.get());
    }
    // Many a demuxer takes an error of the medium for the end.
    if (context().pb->error != 0 || container->deadline().isPassed())
        stop = ReadingStop::Interruption;
    else
        stop = status == AVERROR_EOF ? ReadingStop::EndOfFile : ReadingStop::Damage;
    return nullptr;
}

bool Demuxer::seekBefore(int index, std::int64_t ticks) {
    if (!canSeek())
        return false;
    isFresh = false;
    context().pb->error = 0; // of an earlier call
    return av_seek_frame(&context(), index, ticks, AVSEEK_FLAG_BACKWARD) >= 0;
}

bool Demuxer::rewind() {
    if (isFresh)
        return true;
    if (!canSeek())
        return false;
    context().pb->error = 0;
    if (seekToFirstPacket())
        return true;
    // A container that can't seek is read again from its beginning.
    if (!container->reopen())
        return false;
    selectStream(selected);
    return true;
}

bool Demuxer::seekToFirstPacket() {
    const AVStream& stream = streamOf(selected);
    const AVIndexEntry* first = avformat_index_get_entry(&streamOf(selected), 0);
    // Program and transport streams have an index of where seeks have led, not of their packets.
    const bool isIndexWhole =
        (context().iformat->flags & AVFMT_GENERIC_INDEX) == 0 && timeStamps() != TimeStamps::Sparse;
    if (first && isIndexWhole)
        return seekBefore(selected, first->timestamp);
    if ((context().iformat->flags & AVFMT_NO_BYTE_SEEK) == 0)
        return av_seek_frame(&context(), selected, 0, AVSEEK_FLAG_BYTE) >= 0;
    return seekBefore(selected, stream.start_time != AV_NOPTS_VALUE ? stream.start_time : 0);
}

std::optional<std::int64_t> Demuxer::indexedKeyFrame(int index, std::int64_t ticks) const {
    const AVIndexEntry* entry =
        avformat_index_get_entry_from_timestamp(&streamOf(index), ticks, AVSEEK_FLAG_BACKWARD);
    return entry ? std::optional(entry->timestamp) : std::nullopt;
}

std::vector<std::int64_t> Demuxer::keyFrameTicks(int index) const {
    std::vector<std::int64_t> ticks;
    const int count = avformat_index_get_entries_count(&streamOf(index));
    for (int i = 0; i < count; ++i) {
        const AVIndexEntry* entry = avformat_index_get_entry(&streamOf(index), i);
        if (entry && (entry->flags & AVINDEX_KEYFRAME) != 0)
            ticks.push_back(entry->timestamp);
    }
    return ticks;
}

} // namespace EngineBackend
