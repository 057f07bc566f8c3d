// Linked into tests under ThreadSanitizer only. The distribution's Qt is not instrumented, so the
// sanitizer cannot see two orders that Qt guarantees: what a thread does before it emits a signal,
// and the copies made of the arguments, happen before the queued call is delivered; and everything
// that a thread does happens before wait() for it returns. This file wraps the Qt functions
// involved and tells the sanitizer of these two orders only: accesses that are ordered by neither
// an event nor a wait() are still reported. See docs/threads.md.

#include <QtCore/QByteArray>
#include <QtCore/QDeadlineTimer>
#include <QtCore/QMetaType>
#include <QtCore/QObject>
#include <QtCore/QThread>
#include <algorithm>
#include <array>
#include <cstdlib>
#include <dlfcn.h>
#include <mutex>
#include <sanitizer/tsan_interface.h>
#include <utility>

namespace {

char eventQueues;
char endedThreads;

template<typename Function>
Function original(const char *symbol)
{
    void *address = dlsym(RTLD_NEXT, symbol);
    if (!address)
        std::abort();
    return reinterpret_cast<Function>(address);
}

bool beforeDelivery(void **)
{
    __tsan_acquire(&eventQueues);
    return false; // deliver the event
}

const bool watching = QInternal::registerCallback(QInternal::EventNotifyCallback, beforeDelivery);

// A copy constructor is passed as a plain function pointer, so each type needs its own function.
constexpr std::size_t mostTypes = 64;
std::array<QMetaType::Constructor, mostTypes> constructors;
std::mutex constructorsMutex;

template<std::size_t type>
void *copy(void *where, const void *source)
{
    void *made = constructors[type](where, source);
    __tsan_release(&eventQueues);
    return made;
}

template<std::size_t... type>
constexpr std::array<QMetaType::Constructor, mostTypes> copies(std::index_sequence<type...>)
{
    return {copy<type>...};
}

} // namespace

int QMetaType::registerNormalizedType(const ::QByteArray &name, Destructor destructor,
                                      Constructor constructor, int size, TypeFlags flags,
                                      const QMetaObject *meta)
{
    using Register =
        int (*)(const ::QByteArray &, Destructor, Constructor, int, TypeFlags, const QMetaObject *);
    static const auto registerType = original<Register>(
        "_ZN9QMetaType22registerNormalizedTypeERK10QByteArrayPFvPvEPFS3_S3_PKvEi6QFlagsINS_"
        "8TypeFlagEEPK11QMetaObject");
    static constexpr auto copyFunctions = copies(std::make_index_sequence<mostTypes>());
    const std::lock_guard lock(constructorsMutex);
    auto known = std::find(constructors.begin(), constructors.end(), constructor);
    if (known == constructors.end())
        known = std::find(constructors.begin(), constructors.end(), nullptr);
    if (known == constructors.end())
        std::abort(); // mostTypes is too small
    *known = constructor;
    const auto type = static_cast<std::size_t>(known - constructors.begin());
    return registerType(name, destructor, copyFunctions[type], size, flags, meta);
}

void QMetaObject::activate(QObject *sender, const QMetaObject *meta, int signal, void **arguments)
{
    using Activate = void (*)(QObject *, const QMetaObject *, int, void **);
    static const auto activate = original<Activate>("_ZN11QMetaObject8activateEP7QObjectPKS_iPPv");
    __tsan_release(&eventQueues);
    activate(sender, meta, signal, arguments);
}

void QThread::start(Priority priority)
{
    using Start = void (*)(QThread *, Priority);
    static const auto start = original<Start>("_ZN7QThread5startENS_8PriorityE");
    // Without a context object the function runs in the ending thread, before wait() returns.
    connect(this, &QThread::finished, [] { __tsan_release(&endedThreads); });
    start(this, priority);
}

bool QThread::wait(QDeadlineTimer deadline)
{
    using Wait = bool (*)(QThread *, QDeadlineTimer);
    static const auto wait = original<Wait>("_ZN7QThread4waitE14QDeadlineTimer");
    const bool ended = wait(this, deadline);
    if (ended)
        __tsan_acquire(&endedThreads);
    return ended;
}
