#include "support/zip_writer.h"

#include <zlib.h>

#include <numeric>
#include <stdexcept>

namespace {

constexpr int rawWindow = -15;
constexpr std::uint16_t descriptorFlag = 8;
constexpr std::uint64_t saturated = 0xFFFFFFFF;

void Put(std::string& out, std::uint64_t value, std::size_t size) {
    for (std::size_t index = 0; index < size; ++index) out += static_cast<char>(value >> (8 * index) & 0xFF);
}

// A member as it is written.
struct Written {
    std::string packed;
    std::uint16_t flags;
    std::uint32_t checksum;
    std::uint64_t size;
    std::uint64_t packedSize;
    std::uint64_t offset;
};

Written Prepare(const ZipMember& member) {
    Written written = {};
    const std::string byMethod =
        member.method == zipDeflated && !member.packed ? FIDeflate(member.bytes) : member.bytes;
    written.packed = member.packed.value_or(byMethod);
    written.flags = static_cast<std::uint16_t>(member.flags | (member.descriptor ? descriptorFlag : 0));
    const uLong checksum =
        crc32(0, reinterpret_cast<const Bytef*>(member.bytes.data()), static_cast<uInt>(member.bytes.size()));
    written.checksum = member.checksumTold.value_or(static_cast<std::uint32_t>(checksum));
    written.size = member.sizeTold.value_or(member.bytes.size());
    written.packedSize = member.packedSizeTold.value_or(written.packed.size());
    return written;
}

void PutLocalHeader(std::string& out, const ZipMember& member, Written& written) {
    written.offset = member.headerOffsetTold.value_or(out.size());
    out += "PK\3\4";
    Put(out, 20, 2);
    Put(out, written.flags, 2);
    Put(out, member.method, 2);
    Put(out, 0, 4);
    Put(out, member.descriptor ? 0 : written.checksum, 4);
    Put(out, member.descriptor ? 0 : written.packedSize, 4);
    Put(out, member.descriptor ? 0 : written.size, 4);
    Put(out, member.name.size(), 2);
    Put(out, 0, 2);
    out += member.name;
    out += written.packed;
    if (!member.descriptor) return;
    out += "PK\7\10";
    Put(out, written.checksum, 4);
    Put(out, written.packedSize, 4);
    Put(out, written.size, 4);
}

void PutEntry(std::string& out, const ZipMember& member, const Written& written) {
    std::string extra = member.extra;
    if (member.zip64) {
        Put(extra, 1, 2);
        Put(extra, 24, 2);
        Put(extra, written.size, 8);
        Put(extra, written.packedSize, 8);
        Put(extra, written.offset, 8);
    }
    out += "PK\1\2";
    Put(out, 20, 2);
    Put(out, 20, 2);
    Put(out, written.flags, 2);
    Put(out, member.method, 2);
    Put(out, 0, 4);
    Put(out, written.checksum, 4);
    Put(out, member.zip64 ? saturated : written.packedSize, 4);
    Put(out, member.zip64 ? saturated : written.size, 4);
    Put(out, member.name.size(), 2);
    Put(out, extra.size(), 2);
    Put(out, member.comment.size(), 2);
    Put(out, 0, 8);
    Put(out, member.zip64 ? saturated : written.offset, 4);
    out += member.name;
    out += extra;
    out += member.comment;
}

void PutZip64EndRecord(std::string& out, std::uint64_t count, std::uint64_t size, std::uint64_t offset) {
    const std::uint64_t place = out.size();
    out += "PK\6\6";
    Put(out, 44, 8);
    Put(out, 45, 2);
    Put(out, 45, 2);
    Put(out, 0, 8);
    Put(out, count, 8);
    Put(out, count, 8);
    Put(out, size, 8);
    Put(out, offset, 8);
    out += "PK\6\7";
    Put(out, 0, 4);
    Put(out, place, 8);
    Put(out, 1, 4);
}

}  // namespace

std::string FIWriteZip(const std::vector<ZipMember>& members, const ZipLayout& layout) {
    std::string out;
    std::vector<Written> written;
    for (const ZipMember& member : members) {
        written.push_back(Prepare(member));
        PutLocalHeader(out, member, written.back());
    }
    std::vector<std::size_t> order = layout.directoryOrder;
    if (order.empty()) {
        order.resize(members.size());
        std::iota(order.begin(), order.end(), std::size_t{0});
    }
    const std::uint64_t offset = layout.directoryOffsetTold.value_or(out.size());
    const std::uint64_t start = out.size();
    for (const std::size_t number : order) PutEntry(out, members.at(number), written.at(number));
    out += layout.directoryTail;
    const std::uint64_t size = layout.directorySizeTold.value_or(out.size() - start);
    const std::uint64_t count = layout.countTold.value_or(static_cast<std::uint32_t>(order.size()));
    if (layout.zip64) PutZip64EndRecord(out, count, size, offset);
    out += "PK\5\6";
    Put(out, 0, 4);
    Put(out, layout.zip64 ? 0xFFFF : count, 2);
    Put(out, layout.zip64 ? 0xFFFF : count, 2);
    Put(out, layout.zip64 ? saturated : size, 4);
    Put(out, layout.zip64 ? saturated : offset, 4);
    Put(out, layout.commentLengthTold.value_or(static_cast<std::uint16_t>(layout.comment.size())), 2);
    out += layout.comment;
    return out;
}

std::string FIDeflate(std::string_view bytes) {
    z_stream stream = {};
    constexpr int memoryLevel = 8;
    if (deflateInit2(&stream, Z_BEST_COMPRESSION, Z_DEFLATED, rawWindow, memoryLevel, Z_DEFAULT_STRATEGY) != Z_OK) {
        throw std::runtime_error("deflateInit2");
    }
    std::string out(deflateBound(&stream, static_cast<uLong>(bytes.size())), '\0');
    std::string in(bytes);
    stream.next_in = reinterpret_cast<Bytef*>(in.data());
    stream.avail_in = static_cast<uInt>(in.size());
    stream.next_out = reinterpret_cast<Bytef*>(out.data());
    stream.avail_out = static_cast<uInt>(out.size());
    if (deflate(&stream, Z_FINISH) != Z_STREAM_END) throw std::runtime_error("deflate");
    out.resize(stream.total_out);
    deflateEnd(&stream);
    return out;
}

std::string FIStoredBlock(std::string_view bytes) {
    std::string out(1, '\0');
    Put(out, bytes.size(), 2);
    Put(out, ~bytes.size(), 2);
    out += bytes;
    return out;
}

bool FIInflate(std::string_view packed, std::string& bytes) {
    constexpr std::size_t room = std::size_t{1} << 20;
    z_stream stream = {};
    if (inflateInit2(&stream, rawWindow) != Z_OK) throw std::runtime_error("inflateInit2");
    std::string in(packed);
    bytes.assign(room, '\0');
    stream.next_in = reinterpret_cast<Bytef*>(in.data());
    stream.avail_in = static_cast<uInt>(in.size());
    stream.next_out = reinterpret_cast<Bytef*>(bytes.data());
    stream.avail_out = static_cast<uInt>(bytes.size());
    const int status = inflate(&stream, Z_SYNC_FLUSH);
    bytes.resize(stream.total_out);
    inflateEnd(&stream);
    return status == Z_STREAM_END;
}
