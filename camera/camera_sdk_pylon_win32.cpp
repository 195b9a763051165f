// The camera-SDK seam on the vendor's pylon 6.x C++ library (built only with
// -DTELVANE_PYLON=ON under MSVC). Every library exception becomes a CameraSdkError here,
// so nothing of the library leaks into the camera code.
#include <pylon/AcquireContinuousConfiguration.h>
#include <pylon/AcquireSingleFrameConfiguration.h>
#include <pylon/BaslerUniversalInstantCamera.h>
#include <pylon/PylonIncludes.h>

#include "camera/camera_sdk.h"

struct SdkCamera {
  Pylon::CBaslerUniversalInstantCamera instant;
  // Keeps the buffer of the last result alive for the caller.
  Pylon::CGrabResultPtr lastResult;

  explicit SdkCamera(Pylon::IPylonDevice* device) : instant(device, Pylon::Cleanup_Delete) {}
};

namespace {

template <typename Action>
auto guarded(Action action) -> decltype(action()) {
  try {
    return action();
  } catch (const Pylon::GenericException& error) {
    throw CameraSdkError{error.GetDescription()};
  } catch (const std::exception& error) {
    throw CameraSdkError{error.what()};
  }
}

GenApi::INodeMap& nodes(SdkCamera* camera) { return camera->instant.GetNodeMap(); }

void keep(SdkCamera* camera, SdkGrabResult& result) {
  const Pylon::CGrabResultPtr& grab = camera->lastResult;
  result.succeeded = grab.IsValid() && grab->GrabSucceeded();
  result.buffer = grab.IsValid() ? static_cast<const uint8_t*>(grab->GetBuffer()) : nullptr;
  result.bytes = grab.IsValid() ? grab->GetImageSize() : 0;
}

}  // namespace

void cameraSdkInitialize() {
  guarded([] { Pylon::PylonInitialize(); });
}

void cameraSdkTerminate() {
  guarded([] { Pylon::PylonTerminate(true); });
}

SdkCamera* cameraSdkCreateFirstCamera() {
  return guarded([] {
    Pylon::IPylonDevice* device =
        Pylon::CTlFactory::GetInstance().CreateFirstDevice(Pylon::CDeviceInfo());
    return new SdkCamera(device);
  });
}

void cameraSdkOpen(SdkCamera* camera) {
  guarded([&] { camera->instant.Open(); });
}

void cameraSdkClose(SdkCamera* camera) {
  guarded([&] { camera->instant.Close(); });
}

void cameraSdkStartGrabbing(SdkCamera* camera, size_t maxImages) {
  guarded([&] {
    camera->instant.StartGrabbing(maxImages, Pylon::GrabStrategy_LatestImages,
                                  Pylon::GrabLoop_ProvidedByUser);
  });
}

void cameraSdkStopGrabbing(SdkCamera* camera) {
  guarded([&] { camera->instant.StopGrabbing(); });
}

bool cameraSdkIsGrabbing(SdkCamera* camera) {
  return guarded([&] { return camera->instant.IsGrabbing(); });
}

void cameraSdkRetrieveResult(SdkCamera* camera, SdkGrabResult& result) {
  guarded([&] {
    camera->instant.RetrieveResult(0xFFFFFFFF, camera->lastResult,
                                   Pylon::TimeoutHandling_ThrowException);
    keep(camera, result);
  });
}

void cameraSdkGrabOne(SdkCamera* camera, unsigned timeoutMs, SdkGrabResult& result) {
  guarded([&] {
    camera->instant.GrabOne(timeoutMs, camera->lastResult, Pylon::TimeoutHandling_ThrowException);
    keep(camera, result);
  });
}

bool cameraSdkIsWritable(SdkCamera* camera, const char* name) {
  return guarded([&] { return Pylon::CParameter(nodes(camera), name).IsWritable(); });
}

std::string cameraSdkGetEnum(SdkCamera* camera, const char* name) {
  return guarded(
      [&] { return std::string(Pylon::CEnumParameter(nodes(camera), name).ToString().c_str()); });
}

void cameraSdkSetEnum(SdkCamera* camera, const char* name, const char* entry) {
  guarded([&] { Pylon::CEnumParameter(nodes(camera), name).FromString(entry, true); });
}

// The camera code names the pixel format by its entry of the universal enumeration; only
// the entry it needs is translated, by symbolic name, so the numbering of the library's
// header does not matter. Other formats read as their GenICam value, which never equals it.
int64_t cameraSdkGetPixelFormatEntry(SdkCamera* camera) {
  return guarded([&] {
    Pylon::CEnumParameter format(nodes(camera), "PixelFormat");
    if (format.ToString() == "BayerRG8") return kPixelFormatBayerRG8Entry;
    return static_cast<int64_t>(format.GetIntValue());
  });
}

void cameraSdkSetPixelFormatEntry(SdkCamera* camera, int64_t entry) {
  guarded([&] {
    Pylon::CEnumParameter format(nodes(camera), "PixelFormat");
    if (entry == kPixelFormatBayerRG8Entry) {
      format.FromString("BayerRG8", true);
    } else {
      format.SetIntValue(entry, true);
    }
  });
}

double cameraSdkGetFloat(SdkCamera* camera, const char* name) {
  return guarded([&] { return Pylon::CFloatParameter(nodes(camera), name).GetValue(); });
}

double cameraSdkGetFloatMin(SdkCamera* camera, const char* name) {
  return guarded([&] { return Pylon::CFloatParameter(nodes(camera), name).GetMin(); });
}

double cameraSdkGetFloatMax(SdkCamera* camera, const char* name) {
  return guarded([&] { return Pylon::CFloatParameter(nodes(camera), name).GetMax(); });
}

void cameraSdkSetFloat(SdkCamera* camera, const char* name, double value) {
  guarded([&] { Pylon::CFloatParameter(nodes(camera), name).SetValue(value, true); });
}

int64_t cameraSdkGetInt(SdkCamera* camera, const char* name) {
  return guarded([&] { return Pylon::CIntegerParameter(nodes(camera), name).GetValue(); });
}

int64_t cameraSdkGetIntMin(SdkCamera* camera, const char* name) {
  return guarded([&] { return Pylon::CIntegerParameter(nodes(camera), name).GetMin(); });
}

int64_t cameraSdkGetIntMax(SdkCamera* camera, const char* name) {
  return guarded([&] { return Pylon::CIntegerParameter(nodes(camera), name).GetMax(); });
}

void cameraSdkSetInt(SdkCamera* camera, const char* name, int64_t value) {
  guarded([&] { Pylon::CIntegerParameter(nodes(camera), name).SetValue(value, true); });
}

// Cameras of the 2.0 naming standard have auto-function ROIs, older ones AOIs.
void cameraSdkAutoRegionCoversImage(SdkCamera* camera) {
  guarded([&] {
    GenApi::INodeMap& map = nodes(camera);
    const bool sfnc2 = camera->instant.GetSfncVersion() >= Pylon::Sfnc_2_0_0;
    const char* selector = sfnc2 ? "AutoFunctionROISelector" : "AutoFunctionAOISelector";
    const char* prefix = sfnc2 ? "AutoFunctionROI" : "AutoFunctionAOI";
    Pylon::CEnumParameter(map, selector).TrySetValue(sfnc2 ? "ROI1" : "AOI1");
    const std::string base(prefix);
    Pylon::CIntegerParameter(map, (base + "OffsetX").c_str()).TrySetValue(0);
    Pylon::CIntegerParameter(map, (base + "OffsetY").c_str()).TrySetValue(0);
    Pylon::CIntegerParameter(map, (base + "Width").c_str())
        .TrySetValue(Pylon::CIntegerParameter(map, "Width").GetMax());
    Pylon::CIntegerParameter(map, (base + "Height").c_str())
        .TrySetValue(Pylon::CIntegerParameter(map, "Height").GetMax());
    if (sfnc2) {
      Pylon::CBooleanParameter(map, "AutoFunctionROIUseBrightness").TrySetValue(true);
    }
  });
}

void cameraSdkAutoLimitsToRange(SdkCamera* camera, bool gain) {
  guarded([&] {
    GenApi::INodeMap& map = nodes(camera);
    const bool sfnc2 = camera->instant.GetSfncVersion() >= Pylon::Sfnc_2_0_0;
    if (gain && sfnc2) {
      Pylon::CFloatParameter range(map, "Gain");
      Pylon::CFloatParameter(map, "AutoGainLowerLimit").TrySetValue(range.GetMin());
      Pylon::CFloatParameter(map, "AutoGainUpperLimit").TrySetValue(range.GetMax());
    } else if (gain) {
      Pylon::CIntegerParameter range(map, "GainRaw");
      Pylon::CIntegerParameter(map, "AutoGainRawLowerLimit").TrySetValue(range.GetMin());
      Pylon::CIntegerParameter(map, "AutoGainRawUpperLimit").TrySetValue(range.GetMax());
    } else if (sfnc2) {
      Pylon::CFloatParameter range(map, "ExposureTime");
      Pylon::CFloatParameter(map, "AutoExposureTimeLowerLimit").TrySetValue(range.GetMin());
      Pylon::CFloatParameter(map, "AutoExposureTimeUpperLimit").TrySetValue(range.GetMax());
    } else {
      Pylon::CFloatParameter range(map, "ExposureTimeAbs");
      Pylon::CFloatParameter(map, "AutoExposureTimeAbsLowerLimit").TrySetValue(range.GetMin());
      Pylon::CFloatParameter(map, "AutoExposureTimeAbsUpperLimit").TrySetValue(range.GetMax());
    }
  });
}

void cameraSdkSetMaxNumBuffer(SdkCamera* camera, int buffers) {
  guarded([&] { camera->instant.MaxNumBuffer.SetValue(buffers); });
}

void cameraSdkRegisterSingleFrameConfiguration(SdkCamera* camera) {
  guarded([&] {
    camera->instant.RegisterConfiguration(new Pylon::CAcquireSingleFrameConfiguration,
                                          Pylon::RegistrationMode_ReplaceAll,
                                          Pylon::Cleanup_Delete);
  });
}

void cameraSdkRegisterContinuousConfiguration(SdkCamera* camera) {
  guarded([&] {
    camera->instant.RegisterConfiguration(new Pylon::CAcquireContinuousConfiguration,
                                          Pylon::RegistrationMode_ReplaceAll,
                                          Pylon::Cleanup_Delete);
  });
}

bool cameraSdkNamingStandardAtLeast2(SdkCamera* camera) {
  return guarded([&] { return camera->instant.GetSfncVersion() >= Pylon::Sfnc_2_0_0; });
}
