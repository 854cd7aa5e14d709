#include "Simulation.h"

#include <csignal>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <list>
#include <nlohmann/json.hpp>
#include <string_view>

#include "framework/Failure.h"
#include "simulator/SimulatedCamera.h"
#include "support/Error.h"
#include "support/Json.h"
#include "support/Output.h"

namespace {

using OvSimulator::CameraProfile;
using OvSimulator::SimulatedCamera;

/// Where a camera is to be: "192.168.1.10/24:3956".
struct Place {
    OvSimulator::IpAddresses addresses;
    uint16_t port = OvGige::kControlPort;
};

/// The number after `sign`, which is cut off with it; `otherwise` if there is none.
uint32_t TakeNumber(std::string_view& text, char sign, uint32_t otherwise, uint32_t max) {
    const size_t at = text.find(sign);
    if (at == std::string_view::npos) {
        return otherwise;
    }
    const std::string digits(text.substr(at + 1));
    text = text.substr(0, at);
    const bool isNumber = !digits.empty() && digits.size() <= 5 &&
                          digits.find_first_not_of("0123456789") == std::string::npos;
    const unsigned long value = isNumber ? std::stoul(digits) : max + 1UL;
    if (value > max) {
        throw UsageError("\"" + digits + "\" is no number from 0 to " + std::to_string(max));
    }
    return static_cast<uint32_t>(value);
}

Place ParsePlace(const std::string& argument) {
    constexpr uint32_t kBits = 32;
    constexpr uint32_t kPortMax = 65535;
    constexpr uint32_t kUsualBits = 24;
    std::string_view text = argument;
    Place place;
    place.port = static_cast<uint16_t>(TakeNumber(text, ':', OvGige::kControlPort, kPortMax));
    const uint32_t bits = TakeNumber(text, '/', kUsualBits, kBits - 1);
    const auto ip = OvGige::ParseIpv4(text);
    if (!ip || bits == 0) {
        throw UsageError("\"" + argument + "\" is no address; write it as 192.168.1.10/24:3956");
    }
    place.addresses.ip = *ip;
    place.addresses.mask.value = ~uint32_t{0} << (kBits - bits);
    return place;
}

std::vector<CameraProfile> ProfilesOf(const SimulationOptions& options) {
    std::vector<CameraProfile> profiles;
    for (const std::string& text : options.places) {
        Place place = ParsePlace(text);
        for (uint32_t i = 0; i < options.count; ++i, ++place.addresses.ip.value) {
            CameraProfile profile = OvSimulator::MakeProfile(static_cast<unsigned>(profiles.size()),
                                                             place.addresses, place.port);
            profile.adapter = options.adapter;
            profile.zipped = options.zipped;
            profile.faults = options.faults;
            // Cameras don't all do the same thing at once.
            profile.faults.seed += profile.index;
            profiles.push_back(std::move(profile));
        }
    }
    return profiles;
}

/// Signals for the thread that waits for them. The cameras' threads are made while they are
/// held back, so that they hold them back, too.
class AwaitedSignals {
public:
    AwaitedSignals() {
        sigemptyset(&m_signals);
        for (const int signal : {SIGINT, SIGTERM, SIGUSR1}) {
            sigaddset(&m_signals, signal);
        }
        pthread_sigmask(SIG_BLOCK, &m_signals, nullptr);
    }
    ~AwaitedSignals() { pthread_sigmask(SIG_UNBLOCK, &m_signals, nullptr); }
    AwaitedSignals(const AwaitedSignals&) = delete;
    AwaitedSignals& operator=(const AwaitedSignals&) = delete;

    int Next() const {
        int signal = 0;
        sigwait(&m_signals, &signal);
        return signal;
    }

private:
    sigset_t m_signals{};
};

Json IdentityOf(const SimulatedCamera& camera) {
    const CameraProfile& profile = camera.Profile();
    const OvGige::Endpoint address = camera.Address();
    return {{"model", profile.model},
            {"serialNumber", profile.serialNumber},
            {"mac", TextOf(profile.mac)},
            {"ip", TextOf(address.ip)},
            {"port", address.port}};
}

Json AccountOf(const std::list<SimulatedCamera>& cameras, uint64_t seed) {
    Json document = Json::array();
    for (const SimulatedCamera& camera : cameras) {
        Json entry = IdentityOf(camera);
        for (const auto& [name, count] : RowsOf(camera.Counts())) {
            entry["counts"][std::string(name)] = count;
        }
        document.push_back(std::move(entry));
    }
    return {{"seed", seed}, {"cameras", std::move(document)}};
}

/// Whoever reads the file finds a whole one, the last or this.
void WriteAccount(const std::string& file, const Json& account) {
    const std::string fresh = file + ".new";
    std::ofstream out(fresh);
    out << account.dump(2) << '\n';
    out.close();
    std::error_code error;
    if (out) {
        std::filesystem::rename(fresh, file, error);
    }
    if (!out || error) {
        throw ToolError("can't write the account to " + file);
    }
}

void PrintReady(const std::list<SimulatedCamera>& cameras, bool json) {
    if (json) {
        Json document = Json::array();
        for (const SimulatedCamera& camera : cameras) {
            document.push_back(IdentityOf(camera));
        }
        PrintJsonLine({{"cameras", std::move(document)}});
        return;
    }
    for (const SimulatedCamera& camera : cameras) {
        std::printf("%s %s, %s, at %s\n", camera.Profile().model.c_str(),
                    camera.Profile().serialNumber.c_str(), TextOf(camera.Profile().mac).c_str(),
                    TextOf(camera.Address()).c_str());
    }
    std::printf("ready\n");
    FlushOutput();
}

std::list<SimulatedCamera> MakeCameras(const std::vector<CameraProfile>& profiles) {
    std::list<SimulatedCamera> cameras;
    for (const CameraProfile& profile : profiles) {
        try {
            cameras.emplace_back(profile);
        } catch (const OvProducer::Failure& failure) {
            const bool isDenied = failure.Code() == GenTL::GC_ERR_ACCESS_DENIED;
            throw ToolError(failure.what(), isDenied ? ExitCode::AccessDenied : ExitCode::Failed);
        }
    }
    return cameras;
}

}  // namespace

void Simulate(const SimulationOptions& options, bool json) {
    const std::vector<CameraProfile> profiles = ProfilesOf(options);
    const AwaitedSignals signals;
    const std::list<SimulatedCamera> cameras = MakeCameras(profiles);
    const auto account = [&] {
        if (!options.account.empty()) {
            WriteAccount(options.account, AccountOf(cameras, options.faults.seed));
        }
    };
    account();
    PrintReady(cameras, json);
    while (signals.Next() == SIGUSR1) {
        account();
    }
    account();
}
