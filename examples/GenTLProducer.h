/* SPDX-License-Identifier: Apache-2.0 */
/*
 * A GenTL producer that is loaded from its file
 */
#pragma once

#include <stdexcept>
#include <string>

#include "gentl/GenTL.h"

/// Loads a producer and has its functions as members of the same names.
class GenTLProducer {
public:
    explicit GenTLProducer(const std::string& path) : m_library(path) {}

    /// Throws what the producer says of its last error, unless \a result is a success.
    void Check(GC_ERROR result) const {
        if (result == GC_ERR_SUCCESS)
            return;
        GC_ERROR code = result;
        char text[1024] = "";
        std::size_t size = sizeof text;
        GCGetLastError(&code, text, &size);
        throw std::runtime_error("error " + std::to_string(result) + ": " + text);
    }

private:
    /// The file, as the system loads it.
    class File {
    public:
        explicit File(const std::string& path);
        ~File();
        File(const File&) = delete;
        File& operator=(const File&) = delete;
        void* Find(const char* name) const;

    private:
        void* m_handle;
    };

    template <class Function>
    Function* Find(const char* name) const {
        return reinterpret_cast<Function*>(m_library.Find(name));
    }

    const File m_library;

public:
#define GENTL_FUNCTION(name) decltype(::name)* const name = Find<decltype(::name)>(#name)
    GENTL_FUNCTION(GCInitLib);
    GENTL_FUNCTION(GCCloseLib);
    GENTL_FUNCTION(GCGetLastError);
    GENTL_FUNCTION(TLOpen);
    GENTL_FUNCTION(TLClose);
    GENTL_FUNCTION(TLUpdateInterfaceList);
    GENTL_FUNCTION(TLGetNumInterfaces);
    GENTL_FUNCTION(TLGetInterfaceID);
    GENTL_FUNCTION(TLOpenInterface);
    GENTL_FUNCTION(IFClose);
    GENTL_FUNCTION(IFUpdateDeviceList);
    GENTL_FUNCTION(IFGetNumDevices);
    GENTL_FUNCTION(IFGetDeviceID);
    GENTL_FUNCTION(IFGetDeviceInfo);
    GENTL_FUNCTION(IFOpenDevice);
    GENTL_FUNCTION(DevClose);
    GENTL_FUNCTION(DevGetPort);
    GENTL_FUNCTION(DevGetNumDataStreams);
    GENTL_FUNCTION(DevGetDataStreamID);
    GENTL_FUNCTION(DevOpenDataStream);
    GENTL_FUNCTION(DSClose);
    GENTL_FUNCTION(DSGetInfo);
    GENTL_FUNCTION(DSAllocAndAnnounceBuffer);
    GENTL_FUNCTION(DSQueueBuffer);
    GENTL_FUNCTION(DSFlushQueue);
    GENTL_FUNCTION(DSStartAcquisition);
    GENTL_FUNCTION(DSStopAcquisition);
    GENTL_FUNCTION(DSGetBufferInfo);
    GENTL_FUNCTION(GCGetPortURLInfo);
    GENTL_FUNCTION(GCReadPort);
    GENTL_FUNCTION(GCRegisterEvent);
    GENTL_FUNCTION(EventGetData);
#undef GENTL_FUNCTION
};
