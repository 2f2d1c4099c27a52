/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What the SDK's devices share: building node maps from a description and at most one injected fragment
 */
#pragma once

#include <memory>

#include "GenApi/GenApi.h"
#include "vanto/Device.h"
#include "vanto/VantoFolders.h"
#include "vanto/internal/VantoException.h"

namespace Vanto {

template <class Interface>
class CVantoDevicePrivateImpl : public Interface, public IVantoDevicePrivate {
public:
    void CreateChunkNodeMapFromFile(const gcstring& path, const gcstring_vector& injected) override {
        CheckInjection(injected);
        CreateChunkNodeMapFromString(textFileToString(path), injected);
    }

    void CreateChunkNodeMapFromString(const gcstring& xml, const gcstring_vector& injected) override {
        m_chunkDescription = gcstring();
        CheckInjection(injected);
        GenApi::INodeMap* nodeMap = this->GetNodeMap();
        if (!SupportsChunkParsing() || nodeMap == nullptr || nodeMap->GetNode("ChunkData") == nullptr)
            return;
        GenApi::CNodeMapRef temporary(kNodeMapName);
        LoadFromString(temporary, xml, injected);
        m_chunkDescription = xml;
    }

    bool SupportsChunkParsing() const override { return false; }
    bool IsChunkParsingAvailable() const override { return SupportsChunkParsing() && !m_chunkDescription.empty(); }

    std::shared_ptr<GenApi::CNodeMapRef> CreateChunkNodeMapCopy() override {
        if (m_chunkDescription.empty())
            return nullptr;
        const auto copy = std::make_shared<GenApi::CNodeMapRef>(kNodeMapName);
        copy->_LoadXMLFromString(m_chunkDescription);
        return copy;
    }

protected:
    static constexpr char kNodeMapName[] = "Device";

    static void CheckInjection(const gcstring_vector& injected) {
        static constexpr char kSource[] = "include/vanto/internal/VantoDevicePrivateImpl";
        if (injected.size() > 1)
            throw VANTO_EXCEPTION(RuntimeException, kSource)(
                "Cannot create node map. Too many strings(%d) to inject. Currently the injection of only one XML "
                "string is "
                "supported.",
                injected.size());
    }

    static void LoadFromFile(GenApi::CNodeMapRef& nodeMap, const gcstring& path, const gcstring_vector& injected) {
        CheckInjection(injected);
        if (injected.empty())
            nodeMap._LoadXMLFromFile(path);
        else
            LoadFromString(nodeMap, textFileToString(path), injected);
    }

    static void LoadFromString(GenApi::CNodeMapRef& nodeMap, const gcstring& xml, const gcstring_vector& injected) {
        CheckInjection(injected);
        if (injected.empty())
            nodeMap._LoadXMLFromString(xml);
        else
            nodeMap._LoadXMLFromStringInject(xml, injected.front());
    }

private:
    gcstring m_chunkDescription;  // the text from which chunk node maps are made
};

}  // namespace Vanto
