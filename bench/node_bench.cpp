// How long reads, writes and formulas of live nodes take, compared to an uncontended lock
// and to compiled code.

#include <cstdio>
#include <cstring>
#include <future>
#include <memory>
#include <mutex>
#include <string>
#include <thread>

#include "Base/GCException.h"
#include "GenApi/IInteger.h"
#include "GenApi/INode.h"
#include "GenApi/IPort.h"
#include "GenApi/NodeMapFactory.h"
#include "Measure.h"
#include "formula/MathParserT.h"

namespace {

using namespace GenApi_3_0_ORVANE;  // NOLINT(google-build-using-namespace)

constexpr size_t kCalls = 20000;
constexpr int kFeatures = 500;
constexpr int kManyRegisters = 10000;
constexpr int kRegisterBytes = 4;

/// A device whose accesses take almost no time.
class Memory : public IPort {
public:
    EAccessMode GetAccessMode() override { return RW; }
    void Read(void* buffer, int64_t address, int64_t length) override {
        std::memcpy(buffer, m_Bytes + address, static_cast<size_t>(length));
    }
    void Write(const void* buffer, int64_t address, int64_t length) override {
        std::memcpy(m_Bytes + address, buffer, static_cast<size_t>(length));
    }

private:
    uint8_t m_Bytes[kRegisterBytes * (kManyRegisters + 16)] = {};
};

std::string Register(const std::string& name, const std::string& caching, int address = 16) {
    return "<IntReg Name=\"" + name + "\"><Address>" + std::to_string(address) +
           "</Address><Length>4</Length><AccessMode>RW</AccessMode>"
           "<pPort>Device</pPort><Cachable>" +
           caching + "</Cachable><Sign>Unsigned</Sign><Endianess>LittleEndian</Endianess></IntReg>";
}

/// A feature as in the descriptions of cameras: an integer with limits and a register.
std::string Feature(const std::string& name, const std::string& caching) {
    return "<Integer Name=\"" + name + "\"><Streamable>Yes</Streamable><pValue>" + name +
           "Reg</pValue><Min>0</Min><Max>1000000</Max></Integer>" + Register(name + "Reg", caching);
}

std::string Features() {
    std::string body = Feature("Cached", "WriteThrough") + Feature("Cold", "NoCache");
    for (int i = 0; i < kFeatures; ++i) {
        body += Feature("F" + std::to_string(i), "WriteThrough");
    }
    return body;
}

/// The port of such a camera caches a range of bytes for each of its registers.
std::string ManyRegisters(int count) {
    std::string body = Register("Uncached", "NoCache", 0);
    for (int i = 0; i < count; ++i) {
        body += Register("R" + std::to_string(i), "WriteThrough", kRegisterBytes * (i + 1));
    }
    return body;
}

std::string Description(const std::string& body) {
    return R"(<RegisterDescription ModelName="M" VendorName="V" ToolTip="T" )"
           R"(StandardNameSpace="GEV" SchemaMajorVersion="1" SchemaMinorVersion="1" )"
           R"(SchemaSubMinorVersion="0" MajorVersion="1" MinorVersion="0" SubMinorVersion="0" )"
           R"(ProductGuid="11111111-2222-3333-4444-555555555555" )"
           R"(VersionGuid="66666666-7777-8888-9999-AAAAAAAAAAAA" )"
           R"(xmlns="http://www.genicam.org/GenApi/Version_1_1">)" +
           body + R"(<Port Name="Device"/></RegisterDescription>)";
}

struct Destroyer {
    void operator()(INodeMap* map) const { dynamic_cast<IDestroy&>(*map).Destroy(); }
};

class Camera {
public:
    explicit Camera(const std::string& body)
        : m_Map(CNodeMapFactory(Description(body).c_str()).CreateNodeMap()) {
        m_Map->Connect(&m_Memory);
    }
    IPort& Port() { return dynamic_cast<IPort&>(*m_Map->GetNode("Device")); }
    IInteger& Integer(const char* name) { return dynamic_cast<IInteger&>(*m_Map->GetNode(name)); }
    node_vector Nodes() {
        node_vector nodes;
        m_Map->GetNodes(nodes);
        return nodes;
    }

private:
    Memory m_Memory;
    std::unique_ptr<INodeMap, Destroyer> m_Map;
};

void Print(const char* what, double nanoseconds, double reference) {
    std::printf("%-56s %9.1f ns %8.2f\n", what, nanoseconds, nanoseconds / reference);
}

/// Each write invalidates what other registers have cached of the same bytes. The time to
/// find them should depend little on the number of registers.
void MeasureWritesBeside(int count, double lock) {
    Camera camera(ManyRegisters(count));
    const node_vector nodes = camera.Nodes();
    for (INode* const node : nodes) {
        if (auto* const integer = dynamic_cast<IInteger*>(node)) {
            Keep(integer->GetValue());
        }
    }
    const std::string beside = ", " + std::to_string(count) + " ranges kept";
    const auto print = [&](const char* what, double nanoseconds) {
        Print((what + beside).c_str(), nanoseconds, lock);
    };
    int64_t value = 0;
    for (const char* const name : {"R0", "Uncached"}) {
        IInteger& integer = camera.Integer(name);
        print(*name == 'R' ? "write of a register" : "write of an uncached register",
              Nanoseconds(kCalls, [&] { integer.SetValue(++value & 0xFFFF); }));
    }
    IPort& port = camera.Port();
    print("write through the port",
          Nanoseconds(kCalls, [&] { port.Write(&++value, 0, kRegisterBytes); }));
}

void MeasureAccess(Camera& camera) {
    std::recursive_mutex mutex;
    const double lock = Nanoseconds(kCalls, [&] {
        mutex.lock();
        mutex.unlock();
    });
    Print("lock and unlock of a recursive mutex", lock, lock);
    IInteger& cached = camera.Integer("CachedReg");
    IInteger& cold = camera.Integer("Cold");
    IInteger& feature = camera.Integer("Cached");
    Print("cached integer", Nanoseconds(kCalls, [&] { Keep(cached.GetValue()); }), lock);
    Print("reference and register, cold", Nanoseconds(kCalls, [&] { Keep(cold.GetValue()); }),
          lock);
    int64_t value = 0;
    const auto write = [&](IInteger& integer) {
        return Nanoseconds(kCalls, [&] { integer.SetValue(++value & 0xFFFF); });
    };
    Print("write of a register", write(cached), lock);
    Print("write through a reference, cached", write(feature), lock);
    Print("write through a reference, cold", write(cold), lock);
    Print("write through a reference, cold, no verification",
          Nanoseconds(kCalls, [&] { cold.SetValue(++value & 0xFFFF, false); }), lock);
    MeasureWritesBeside(1, lock);
    MeasureWritesBeside(kManyRegisters, lock);
}

/// The variables are where the compiler can't know their values.
template <class Number>
struct Variables {
    Number a = 7;
    Number b = 3;
    Number c = 11;
};

template <class Parser, class Number, class Compiled>
void MeasureFormula(const char* kind, const char* formula, const Compiled& compiled) {
    Parser parser;
    for (const char* name : {"A", "B", "C"}) {
        parser.AddVariable(name);
    }
    Variables<Number> variables;
    const double reference = Nanoseconds(kCalls, [&] {
        asm volatile("" : : "r"(&variables) : "memory");
        Keep(compiled(variables));
    });
    const double compile = Nanoseconds(kCalls / 10, [&] { Keep(parser.Compile(formula, false)); });
    parser.GetVariableSlot(0) = variables.a;
    parser.GetVariableSlot(1) = variables.b;
    parser.GetVariableSlot(2) = variables.c;
    Number result{};
    const double evaluate = Nanoseconds(kCalls, [&] {
        Keep(parser.Evaluate(result));
        Keep(result);
    });
    std::printf("%s formula %s\n", kind, formula);
    Print("  compiled by the C++ compiler", reference, reference);
    Print("  evaluated", evaluate, reference);
    Print("  compiled", compile, reference);
}

template <class Parser, class Number>
void MeasureFormulas(const char* kind) {
    using V = Variables<Number>;
    MeasureFormula<Parser, Number>(kind, "(A+B*C-2)/(B+1)",
                                   [](const V& v) { return (v.a + v.b * v.c - 2) / (v.b + 1); });
    // How cameras compute their frame rate: the longer of two times takes effect.
    MeasureFormula<Parser, Number>(kind, "(A+B>C)?(1000000/(A+B)):(1000000/C)", [](const V& v) {
        return v.a + v.b > v.c ? 1000000 / (v.a + v.b) : 1000000 / v.c;
    });
}

void MeasureEnumeration(Camera& camera) {
    const node_vector nodes = camera.Nodes();
    std::vector<IValue*> values;
    for (INode* const node : nodes) {
        if (auto* const value = dynamic_cast<IValue*>(node)) {
            values.push_back(value);
        }
    }
    const double each = Nanoseconds(10,
                                    [&] {
                                        for (IValue* const value : values) {
                                            Keep(value->ToString().size());
                                        }
                                    }) /
                        static_cast<double>(values.size());
    std::printf("%-56s %9.1f ns, %.2f million a second\n", "value as text, warm caches", each,
                1e3 / each);
}

/// Applications with cameras have several threads, and locks cost more in a process that
/// has a second one.
class IdleThread {
public:
    IdleThread() : m_Thread([this] { m_End.get_future().wait(); }) {}
    ~IdleThread() {
        m_End.set_value();
        m_Thread.join();
    }
    IdleThread(const IdleThread&) = delete;
    IdleThread& operator=(const IdleThread&) = delete;

private:
    std::promise<void> m_End;
    std::thread m_Thread;
};

void MeasureAll() {
    const IdleThread idle;
    Camera camera(Features());
    MeasureAccess(camera);
    MeasureFormulas<MathParser, double>("double");
    MeasureFormulas<Int64MathParser, int64_t>("integer");
    MeasureEnumeration(camera);
}

}  // namespace

int main() {
    try {
        MeasureAll();
    } catch (const GenICam_3_0_ORVANE::GenericException& failure) {
        std::fprintf(stderr, "node_bench: %s\n", failure.what());
        return 1;
    }
    return 0;
}
