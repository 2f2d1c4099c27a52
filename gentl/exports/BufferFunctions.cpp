/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Functions of buffers
 */
#include "exports/Guard.h"
#include "stream/Stream.h"
#include "support/LastError.h"

using namespace gentl;

namespace {

void CheckSize(size_t size) {
    if (size == 0)
        throw GenTLError(GC_ERR_INVALID_PARAMETER, "A buffer needs at least one byte");
}

[[noreturn]] void ThrowNoParts() {
    throw GenTLError(GC_ERR_NO_DATA, "The buffer holds one image, no parts");
}

// What a single one of several infos gives; it is no error of the thread.
GC_ERROR WriteQuietly(const Stream& stream, BUFFER_HANDLE buffer, DS_BUFFER_INFO_STACKED& entry) {
    try {
        INFO_DATATYPE type = INFO_DATATYPE_UNKNOWN;
        size_t size = entry.iSize;
        WriteInfo(stream.GetBufferInfo(buffer, entry.iInfoCmd), {&type, entry.pBuffer, &size});
        entry.iType = type;
        entry.iSize = size;
        return GC_ERR_SUCCESS;
    } catch (const GenTLError& error) {
        return error.Code();
    }
}

}  // namespace

extern "C" {

GC_API DSAnnounceBuffer(DS_HANDLE hDataStream, void* pBuffer, size_t iSize, void* pPrivate, BUFFER_HANDLE* phBuffer) {
    return With<Stream>(hDataStream, [&](Stream& stream) {
        Required(phBuffer, "phBuffer");
        CheckSize(iSize);
        Store(phBuffer, stream.Announce(Required(pBuffer, "pBuffer"), iSize, pPrivate));
    });
}

GC_API DSAllocAndAnnounceBuffer(DS_HANDLE hDataStream, size_t iSize, void* pPrivate, BUFFER_HANDLE* phBuffer) {
    return With<Stream>(hDataStream, [&](Stream& stream) {
        Required(phBuffer, "phBuffer");
        CheckSize(iSize);
        Store(phBuffer, stream.AllocateAndAnnounce(iSize, pPrivate));
    });
}

GC_API DSAnnounceCompositeBuffer(DS_HANDLE hDataStream, size_t, void**, size_t*, void*, BUFFER_HANDLE*) {
    return With<Stream>(hDataStream,
                        [](Stream&) { throw GenTLError(GC_ERR_NOT_IMPLEMENTED, "There are no composite buffers"); });
}

GC_API DSRevokeBuffer(DS_HANDLE hDataStream, BUFFER_HANDLE hBuffer, void** ppBuffer, void** ppPrivate) {
    return With<Stream>(hDataStream, [&](Stream& stream) {
        Optional(ppBuffer, "ppBuffer");
        Optional(ppPrivate, "ppPrivate");
        const std::shared_ptr<StreamBuffer> buffer = stream.Revoke(hBuffer);
        if (ppBuffer != nullptr)
            Store(ppBuffer, buffer->IsOwned() ? nullptr : buffer->Base());
        if (ppPrivate != nullptr)
            Store(ppPrivate, buffer->UserPointer());
    });
}

GC_API DSQueueBuffer(DS_HANDLE hDataStream, BUFFER_HANDLE hBuffer) {
    return With<Stream>(hDataStream, [&](Stream& stream) { stream.Queue(hBuffer); });
}

GC_API DSFlushQueue(DS_HANDLE hDataStream, ACQ_QUEUE_TYPE iOperation) {
    return With<Stream>(hDataStream, [&](Stream& stream) { stream.Flush(iOperation); });
}

GC_API DSGetBufferID(DS_HANDLE hDataStream, uint32_t iIndex, BUFFER_HANDLE* phBuffer) {
    return With<Stream>(hDataStream, [&](Stream& stream) {
        Required(phBuffer, "phBuffer");
        Store(phBuffer, stream.BufferAt(iIndex));
    });
}

GC_API DSGetBufferInfo(DS_HANDLE hDataStream, BUFFER_HANDLE hBuffer, BUFFER_INFO_CMD iInfoCmd, INFO_DATATYPE* piType,
                       void* pBuffer, size_t* piSize) {
    return Ask<Stream>(hDataStream, piType, pBuffer, piSize,
                       [&](Stream& stream) { return stream.GetBufferInfo(hBuffer, iInfoCmd); });
}

GC_API DSGetBufferInfoStacked(DS_HANDLE hDataStream, BUFFER_HANDLE hBuffer, DS_BUFFER_INFO_STACKED* pInfoStacked,
                              size_t iNumInfos) {
    return With<Stream>(hDataStream, [&](Stream& stream) {
        Required(pInfoStacked, "pInfoStacked");
        if (iNumInfos == 0)
            throw GenTLError(GC_ERR_INVALID_PARAMETER, "No info was asked for");
        stream.CheckBuffer(hBuffer);
        for (size_t index = 0; index < iNumInfos; ++index) {
            DS_BUFFER_INFO_STACKED entry = Load(pInfoStacked + index);
            entry.iResult = WriteQuietly(stream, hBuffer, entry);
            Store(pInfoStacked + index, entry);
        }
    });
}

GC_API DSGetBufferChunkData(DS_HANDLE hDataStream, BUFFER_HANDLE hBuffer, SINGLE_CHUNK_DATA*, size_t* piNumChunks) {
    return With<Stream>(hDataStream, [&](Stream& stream) {
        Required(piNumChunks, "piNumChunks");
        stream.CheckBuffer(hBuffer);
        throw GenTLError(GC_ERR_NO_DATA, "The buffer holds no chunks");
    });
}

GC_API DSGetNumBufferParts(DS_HANDLE hDataStream, BUFFER_HANDLE hBuffer, uint32_t* piNumParts) {
    return With<Stream>(hDataStream, [&](Stream& stream) {
        Required(piNumParts, "piNumParts");
        stream.CheckBuffer(hBuffer);
        ThrowNoParts();
    });
}

GC_API DSGetBufferPartInfo(DS_HANDLE hDataStream, BUFFER_HANDLE hBuffer, uint32_t, BUFFER_PART_INFO_CMD,
                           INFO_DATATYPE* piType, void* pBuffer, size_t* piSize) {
    return Ask<Stream>(hDataStream, piType, pBuffer, piSize, [&](Stream& stream) -> Info {
        stream.CheckBuffer(hBuffer);
        ThrowNoParts();
    });
}

GC_API DSGetBufferPartInfoStacked(DS_HANDLE hDataStream, BUFFER_HANDLE hBuffer,
                                  DS_BUFFER_PART_INFO_STACKED* pInfoStacked, size_t iNumInfos) {
    return With<Stream>(hDataStream, [&](Stream& stream) {
        Required(pInfoStacked, "pInfoStacked");
        if (iNumInfos == 0)
            throw GenTLError(GC_ERR_INVALID_PARAMETER, "No info was asked for");
        stream.CheckBuffer(hBuffer);
        ThrowNoParts();
    });
}

GC_API DSGetNumBufferSegments(DS_HANDLE hDataStream, BUFFER_HANDLE hBuffer, uint32_t* piNumSegments) {
    return With<Stream>(hDataStream, [&](Stream& stream) {
        Required(piNumSegments, "piNumSegments");
        stream.CheckBuffer(hBuffer);
        Store(piNumSegments, 1U);
    });
}

GC_API DSGetBufferSegmentInfo(DS_HANDLE hDataStream, BUFFER_HANDLE hBuffer, uint32_t iSegmentIndex,
                              SEGMENT_INFO_CMD iInfoCmd, INFO_DATATYPE* piType, void* pBuffer, size_t* piSize) {
    return Ask<Stream>(hDataStream, piType, pBuffer, piSize,
                       [&](Stream& stream) { return stream.GetSegmentInfo(hBuffer, iSegmentIndex, iInfoCmd); });
}

}  // extern "C"
