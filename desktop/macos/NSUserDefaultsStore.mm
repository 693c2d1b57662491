#include "desktop/macos/NSUserDefaultsStore.h"

#include "desktop/macos/NSStringText.h"
#include "desktop/macos/ObjectReference.h"
#include "foundation/FileWatch.h"

#include <QMetaMethod>
#include <QPointer>

#import <Foundation/Foundation.h>

namespace kestrin::desktop {

using namespace foundation;
using namespace runtime;

namespace {

StoreResult resultOf(bool isStored) {
    return {isStored ? QString() : QStringLiteral("The preferences cannot be written."), {}};
}

NSString *applicationDomain() {
    return @KESTRIN_BUNDLE_IDENTIFIER;
}

/// Kept by the process. An application must not name its own domain as a suite, any other program has to.
NSUserDefaults *applicationDefaults() {
    if ([[[NSBundle mainBundle] bundleIdentifier] isEqualToString:applicationDomain()])
        return [NSUserDefaults standardUserDefaults];
    static NSUserDefaults *const suite = [[NSUserDefaults alloc] initWithSuiteName:applicationDomain()];
    return suite;
}

QString domainFile() {
    NSString *library =
        [NSSearchPathForDirectoriesInDomains(NSLibraryDirectory, NSUserDomainMask, YES) objectAtIndex:0];
    return fromNSString(library) + QStringLiteral("/Preferences/") + fromNSString(applicationDomain()) +
           QStringLiteral(".plist");
}

/// Booleans are numbers of a class of their own; 1 and "YES" are not booleans.
bool isBoolean(id value) {
    return [value isKindOfClass:[[NSNumber numberWithBool:YES] class]];
}

/// YES equals 1, but only one of them is a boolean.
bool isSameValue(id one, id other) {
    return one == other || ([one isEqual:other] && isBoolean(one) == isBoolean(other));
}

std::optional<QStringList> strings(id value) {
    if (![value isKindOfClass:[NSArray class]])
        return std::nullopt;
    QStringList list;
    for (id item in value) {
        if (![item isKindOfClass:[NSString class]])
            return std::nullopt;
        list.append(fromNSString(item));
    }
    return list;
}

void collectDifferences(QStringList &keys, NSDictionary *from, NSDictionary *to) {
    for (NSString *key in from) {
        const QString name = fromNSString(key);
        if (!keys.contains(name) && !isSameValue([from objectForKey:key], [to objectForKey:key]))
            keys.append(name);
    }
}

} // namespace

struct NSUserDefaultsStore::Private {
    NSUserDefaults *defaults = applicationDefaults();
    /// What listeners have been told of.
    ObjectReference<NSDictionary *> known;
    ObjectReference<id> token;
    std::unique_ptr<FileWatch> watch;

    ~Private() {
        if (token.get())
            [[NSNotificationCenter defaultCenter] removeObserver:token.get()];
    }

    NSDictionary *values() const {
        NSDictionary *stored = [defaults persistentDomainForName:applicationDomain()];
        return stored ? stored : [NSDictionary dictionary];
    }

    bool set(const QString &key, id value) {
        NSString *name = toNSString(key);
        // Where 1 equals YES, the one would not replace the other.
        if ([value isEqual:[defaults objectForKey:name]])
            [defaults removeObjectForKey:name];
        [defaults setObject:value forKey:name];
        // A program that ends at once would otherwise take the change with it.
        return [defaults synchronize];
    }
};

NSUserDefaultsStore::NSUserDefaultsStore(QObject *parent)
    : UserDefaults(parent)
    , d(std::make_unique<Private>()) {}

NSUserDefaultsStore::~NSUserDefaultsStore() = default;

std::optional<bool> NSUserDefaultsStore::boolean(const QString &key) const {
    @autoreleasepool {
        const id value = [d->defaults objectForKey:toNSString(key)];
        return isBoolean(value) ? std::optional<bool>([value boolValue]) : std::nullopt;
    }
}

std::optional<QStringList> NSUserDefaultsStore::stringArray(const QString &key) const {
    @autoreleasepool {
        return strings([d->defaults objectForKey:toNSString(key)]);
    }
}

StoreResult NSUserDefaultsStore::setBoolean(const QString &key, bool value) {
    if (boolean(key) == value)
        return {};
    bool isStored = false;
    @autoreleasepool {
        isStored = d->set(key, [NSNumber numberWithBool:value]);
    }
    tellDifferences();
    return resultOf(isStored);
}

StoreResult NSUserDefaultsStore::updateStringArray(const QString &key, const StringArrayChange &change) {
    const std::optional<QStringList> former = stringArray(key);
    const QStringList value = change(former);
    if (former == value)
        return {};
    bool isStored = false;
    @autoreleasepool {
        NSMutableArray *array = [NSMutableArray array];
        for (const QString &item : value)
            [array addObject:toNSString(item)];
        isStored = d->set(key, array);
    }
    tellDifferences();
    return resultOf(isStored);
}

bool NSUserDefaultsStore::isEmpty() const {
    @autoreleasepool {
        return [d->values() count] == 0;
    }
}

void NSUserDefaultsStore::connectNotify(const QMetaMethod &signal) {
    if (d->watch || signal != QMetaMethod::fromSignal(&UserDefaults::changed))
        return;
    @autoreleasepool {
        d->known.reset(d->values());
        // The main queue, because the system tells it on the thread that made the change.
        const QPointer<NSUserDefaultsStore> store(this);
        d->token.reset([[NSNotificationCenter defaultCenter]
            addObserverForName:NSUserDefaultsDidChangeNotification
                        object:nil
                         queue:[NSOperationQueue mainQueue]
                    usingBlock:^(NSNotification *) {
                      if (store)
                          store->tellDifferences();
                    }]);
    }
    // Other processes cannot be followed by observing the keys: the dots in them would be read as a path.
    d->watch = std::make_unique<FileWatch>(domainFile());
    connect(d->watch.get(), &FileWatch::changed, this, [this] {
        @autoreleasepool {
            [d->defaults synchronize];
        }
        tellDifferences();
    });
}

void NSUserDefaultsStore::tellDifferences() {
    if (!d->watch)
        return;
    QStringList keys;
    @autoreleasepool {
        NSDictionary *now = d->values();
        collectDifferences(keys, d->known.get(), now);
        collectDifferences(keys, now, d->known.get());
        d->known.reset(now);
    }
    for (const QString &key : std::as_const(keys))
        Q_EMIT changed(key);
}

} // namespace kestrin::desktop
