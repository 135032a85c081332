// SPDX-License-Identifier: GPL-3.0-or-later

// What file managers wait for: a menu over the bus, from an extension that runs and from one that the bus has
// to start, against a service that does nothing. Each call is a repetition of its own, so calls of all kinds
// alternate.

#include <benchmark/benchmark.h>
#include <gio/gio.h>

#include <csignal>
#include <stdexcept>
#include <string>

#include "Home.h"
#include "Timer.h"
#include "Workload.h"
#include "wire/FileUri.h"
#include "wire/Interface.h"
#include "wire/Pointers.h"
#include "wire/Rows.h"

namespace sprig::bench {

namespace {

/// Makes a menu of 30 rows: these, the one that they are below, a separator, and the settings.
constexpr std::size_t offeredTemplates = 27;
constexpr std::size_t rowCount = 30;

struct Method {
  const char* service;
  const char* object;
  const char* interface;
  const char* name;
};

constexpr Method getMenu = {wire::busName, wire::objectPath, wire::interfaceName, "GetMenu"};
constexpr Method getProperty = {wire::busName, wire::objectPath, "org.freedesktop.DBus.Properties", "Get"};
constexpr Method nothing = {"com.kestrel.Sprig.Bare", "/com/kestrel/Sprig/Bare", "com.kestrel.Sprig.Bare",
                            "Nothing"};
/// The same of a service that is linked with the extension's libraries.
constexpr Method linkedNothing = {"com.kestrel.Sprig.Linked", nothing.object, nothing.interface,
                                  nothing.name};

constexpr Method ofBus(const char* name) {
  return {"org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", name};
}

/// A session bus that starts the extension and the bare service.
class Bus {
 public:
  Bus() {
    addService(wire::busName, SPRIG_EXTENSION);
    addService(nothing.service, SPRIG_BARE_SERVICE);
    addService(linkedNothing.service, SPRIG_LINKED_SERVICE);
    g_test_dbus_add_service_dir(bus.get(), home.folder().path().c_str());
    g_test_dbus_up(bus.get());
    connection.reset(g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr));
  }
  ~Bus() {
    connection.reset();
    g_test_dbus_down(bus.get());
  }
  Bus(const Bus&) = delete;
  Bus& operator=(const Bus&) = delete;

  /// The answer to a call. `parameters` may float.
  wire::VariantPointer call(const Method& method, GVariant* parameters = nullptr) {
    GError* error = nullptr;
    wire::VariantPointer answer(g_dbus_connection_call_sync(
        connection.get(), method.service, method.object, method.interface, method.name, parameters, nullptr,
        G_DBUS_CALL_FLAGS_NONE, -1, nullptr, &error));
    if (answer) return answer;
    const wire::ErrorPointer owned(error);
    throw std::runtime_error(std::string(method.name) + ": " + error->message);
  }

  wire::VariantPointer menu() {
    const auto folder = wire::uriFromPath(home.folder().path()).value();
    const char* targets[] = {folder.c_str(), nullptr};
    return call(getMenu, g_variant_new("(u^as@a{sv})", 1, targets,
                                       g_variant_new_array(G_VARIANT_TYPE("{sv}"), nullptr, 0)));
  }

  wire::VariantPointer revision() {
    return call(getProperty, g_variant_new("(ss)", wire::interfaceName, "Revision"));
  }

  wire::VariantPointer empty() { return call(nothing); }
  wire::VariantPointer linkedEmpty() { return call(linkedNothing); }

  /// Ends a service that runs.
  void end(const char* service) {
    std::uint32_t process = 0;
    g_variant_get(call(ofBus("GetConnectionUnixProcessID"), g_variant_new("(s)", service)).get(), "(u)",
                  &process);
    ::kill(static_cast<pid_t>(process), SIGKILL);
    while (isRunning(service)) continue;
  }

 private:
  void addService(const std::string& name, const std::string& program) {
    test::writeFile(home.folder().appendingPath(name + ".service"),
                    "[D-BUS Service]\nName=" + name + "\nExec=" + program + "\n");
  }

  bool isRunning(const char* service) {
    gboolean result = FALSE;
    g_variant_get(call(ofBus("NameHasOwner"), g_variant_new("(s)", service)).get(), "(b)", &result);
    return result != FALSE;
  }

  Home home{configuration(offeredTemplates)};
  wire::ObjectPointer<GTestDBus> bus{g_test_dbus_new(G_TEST_DBUS_NONE)};
  wire::ObjectPointer<GDBusConnection> connection;
};

Bus& sharedBus() {
  static Bus bus;
  return bus;
}

using Call = wire::VariantPointer (Bus::*)();

void warmCall(benchmark::State& state, Call call) {
  auto& bus = sharedBus();
  for (auto _ : state) benchmark::DoNotOptimize((bus.*call)());
}

void warmMenu(benchmark::State& state) {
  auto& bus = sharedBus();
  for (auto _ : state) {
    const auto answer = bus.menu();
    const wire::VariantPointer bytes(g_variant_get_child_value(answer.get(), 1));
    const auto rows = wire::rowsFromVariant(bytes.get());
    if (!rows || rows->size() != rowCount) return state.SkipWithError("not the expected menu");
  }
}

/// Each call finds its service ended; both ends of that are not timed.
void coldCall(benchmark::State& state, const char* service, Call call) {
  auto& bus = sharedBus();
  static_cast<void>((bus.*call)());
  for (auto _ : state) {
    bus.end(service);
    const Timer timer;
    benchmark::DoNotOptimize((bus.*call)());
    state.SetIterationTime(timer.seconds());
  }
}

void eachCallByItself(benchmark::internal::Benchmark* bench, int calls) {
  bench->Iterations(1)->Repetitions(calls)->UseRealTime();
}
void manyTimes(benchmark::internal::Benchmark* bench) { eachCallByItself(bench, 2000); }
void someTimes(benchmark::internal::Benchmark* bench) {
  bench->Iterations(1)->Repetitions(60)->UseManualTime();
}

BENCHMARK(warmMenu)->Name("bus warm/ours")->Apply(manyTimes);
BENCHMARK_CAPTURE(warmCall, bytes, &Bus::menu)->Name("bus warm/bytes")->Apply(manyTimes);
BENCHMARK_CAPTURE(warmCall, property, &Bus::revision)->Name("bus warm/property")->Apply(manyTimes);
BENCHMARK_CAPTURE(warmCall, nothing, &Bus::empty)->Name("bus warm/floor")->Apply(manyTimes);

BENCHMARK_CAPTURE(coldCall, menu, wire::busName, &Bus::menu)->Name("bus cold/ours")->Apply(someTimes);
BENCHMARK_CAPTURE(coldCall, nothing, nothing.service, &Bus::empty)->Name("bus cold/floor")->Apply(someTimes);
BENCHMARK_CAPTURE(coldCall, linked, linkedNothing.service, &Bus::linkedEmpty)
    ->Name("bus cold/linked")
    ->Apply(someTimes);

}  // namespace

}  // namespace sprig::bench

BENCHMARK_MAIN();
