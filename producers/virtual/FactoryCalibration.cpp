#include "virtual/FactoryCalibration.h"

#include <iomanip>
#include <locale>
#include <sstream>

#include "virtual/Camera.h"

namespace OvVirtual {

std::string FactoryCalibration(const CameraIdentity& identity) {
    std::ostringstream out;
    out.imbue(std::locale::classic());
    out << "Model=" << identity.model << "\nSerialNumber=" << identity.serialNumber
        << "\nSensorWidth=" << kSensorWidth << "\nSensorHeight=" << kSensorHeight
        << "\nColorFilter=" << (identity.color ? "BayerRG" : "None") << '\n';
    if (identity.color) {
        constexpr const char* colors[] = {"Red", "Green", "Blue"};
        const CameraSettings factory = FactorySettings(true);
        out << std::fixed << std::setprecision(4);
        for (size_t i = 0; i < factory.balance.size(); ++i) {
            const double ratio = static_cast<double>(factory.balance[i]) / kBalanceOne;
            out << "Sensitivity" << colors[i] << '=' << kSensitivity[i] << "\nBalance" << colors[i]
                << '=' << ratio << '\n';
        }
    }
    return out.str();
}

}  // namespace OvVirtual
