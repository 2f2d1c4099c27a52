/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Takes images from the first camera: example-grab [COUNT]
 */

#include <cstdlib>
#include <exception>
#include <memory>
#include <vector>

#include "camera.h"
#include "vanto/StreamGrabber.h"

namespace {

constexpr std::size_t kBuffers = 4;
constexpr std::uint32_t kTimeout = 5000;  // milliseconds

/// Takes images and gives each buffer back to be filled again.
int Grab(Vanto::IStreamGrabber& grabber, int count) {
    for (int taken = 0; taken < count; ++taken) {
        Vanto::GrabResult result;
        while (!grabber.RetrieveResult(result)) {
            if (!grabber.GetWaitObject().Wait(kTimeout)) {
                std::cerr << "no image came\n";
                return 1;
            }
        }
        if (result.Succeeded())
            std::cout << "image " << result.FrameTag() << ": " << result.GetWidth() << " x " << result.GetHeight()
                      << ", " << result.GetPayloadSize() << " bytes\n";
        else
            std::cout << "image failed: " << result.GetErrorDescription() << '\n';
        grabber.QueueBuffer(result.Handle());
    }
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    try {
        const OpenCamera camera;
        Vanto::IStreamGrabber* grabber = camera->GetStreamGrabber(0);
        if (grabber == nullptr) {
            std::cerr << "the camera's port names no frame grabber\n";
            return 1;
        }
        grabber->Open();
        const GenApi::CIntegerPtr payloadSize = grabber->GetNodeMap()->GetNode("PayloadSize");
        const auto size = static_cast<std::size_t>(payloadSize->GetValue());
        std::vector<std::unique_ptr<unsigned char[]>> memory;
        std::vector<Vanto::StreamBufferHandle> buffers;
        for (std::size_t i = 0; i < kBuffers; ++i) {
            memory.push_back(std::make_unique<unsigned char[]>(size));
            buffers.push_back(grabber->RegisterBuffer(memory.back().get(), size));
        }

        grabber->PrepareGrab();  // features that change the image's size are locked from here on
        for (const Vanto::StreamBufferHandle buffer : buffers)
            grabber->QueueBuffer(buffer);  // the first one starts the frame grabber
        const int result = Grab(*grabber, argc > 1 ? std::atoi(argv[1]) : 10);
        grabber->FinishGrab();

        Vanto::GrabResult left;
        while (grabber->RetrieveResult(left)) {
        }
        for (const Vanto::StreamBufferHandle buffer : buffers)
            grabber->DeregisterBuffer(buffer);
        grabber->Close();
        return result;
    } catch (const std::exception& error) {
        std::cerr << error.what() << '\n';
        return 1;
    }
}
