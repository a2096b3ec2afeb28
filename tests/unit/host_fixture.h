// A robot made from a code file of the test's own, reached as the host reaches it.
#pragma once

#include <string>

#include "host/rovanta_object.h"
#include "kestrone/com.h"
#include "platform/platform_services.h"
#include "support/temp_dir.h"

namespace host_testing {

// Three pins: A on port 1 bit 5 with both flags set, B unplaced (port -1), C on port 2 bit 7.
inline const char* const kThreePins =
    "[Settings]\nDescription=Test robot\n"
    "[Pins]\nCount=3\n1=A\n2=B\n3=C\n"
    "[PinPort]\n1=1\n2=-1\n3=2\n"
    "[PinDesiredBit]\n1=5\n2=0\n3=7\n"
    "[PinDirection]\n1=1\n2=2\n"
    "[PinMustUsePort]\n1=True\n"
    "[PinMustUsePin]\n1=1\n"
    "[SamePortAsPinX]\n3=1\n"
    "[PinValue]\n3=1\n";

// Two pins, both placed.
inline const char* const kTwoPlacedPins =
    "[Settings]\nDescription=Two\n[Pins]\nCount=2\n1=L\n2=R\n"
    "[PinPort]\n1=3\n2=3\n[PinDesiredBit]\n1=0\n2=1\n";

// No pins at all: the table holds the fallback pin.
inline const char* const kNoPins = "[Settings]\nDescription=Bare\n";

class Robot {
  public:
    // The host's services are `services` unless the test gives its own.
    explicit Robot(const std::string& code_file, kestrone::IHostServices* host = nullptr) {
        dir_.write("Robo.c", code_file);
        dir_.write("help/Robo.chm", "ITSF");
        rovanta::RovantaObject* raw = nullptr;
        status_ = rovanta::RovantaObject::create(
            platform::ModuleFacts::for_path(dir_.path() + "/Robo.so"), host ? host : &services,
            &raw);
        object_ = kestrone::ComPtr<rovanta::RovantaObject>::attach(raw);
    }
    Robot(const Robot&) = delete;
    Robot& operator=(const Robot&) = delete;

    rovanta::Rovanta& core() { return object_->core(); }
    rovanta::RovantaObject& object() { return *object_.get(); }
    kestrone::IUnknown* unknown() {
        return static_cast<kestrone::IKestroneComponentV5*>(object_.get());
    }
    kestrone::HRESULT creation_status() const { return status_; }

    platform::RecordingServices services;

  private:
    testing_support::TempDir dir_;
    kestrone::HRESULT status_ = kestrone::S_OK;
    kestrone::ComPtr<rovanta::RovantaObject> object_;
};

}  // namespace host_testing
