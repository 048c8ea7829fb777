#include "tools/docs/BusContract.h"

namespace kintar::docs {

namespace {

constexpr const char* names = R"MD(
This page is all that a client program needs. It is written by `kintar-docs bus` from the table that
the server itself works from; do not edit it.

## In short

```python
import dbus

bus = dbus.SessionBus()
server = bus.get_object("net.tarnholm.Kintar3", "/net/tarnholm/Kintar3")

def create(name):
    path = server.CreateObject(name, dbus_interface="net.tarnholm.Kintar3.Server")
    return bus.get_object("net.tarnholm.Kintar3", path)

photo = create("objKintar")
def put(member, value):
    photo.Set("net.tarnholm.Kintar3.objKintar", member, value,
              dbus_interface="org.freedesktop.DBus.Properties")

put("LocGrp", dbus.Int32(1))
put("FName", "Ada")
put("LName", "Byron")
put("ID", dbus.Int32(17))   # setting ID shows the event
input("Enter ends the program, and with it the window. ")
```

## Names

| what | name |
|---|---|
| bus | the session bus |
| bus name | `net.tarnholm.Kintar3`; a call to it starts the server |
| root object | `/net/tarnholm/Kintar3`, interface `net.tarnholm.Kintar3.Server` |
| an object of a class | `/net/tarnholm/Kintar3/<class>/<n>`, interface `net.tarnholm.Kintar3.<class>` |

`<n>` counts up over all classes and is never used again while the server runs. Names are exact,
letter case included.

### The root object

| member | signature | |
|---|---|---|
| `CreateObject` | `(s class)` gives `o` | makes an object of a class; its path |
| `ReleaseObject` | `(o object)` | ends an object |
| `Version` | property `s`, read | the server's version |
| `Classes` | property `as`, read | the classes that can be created |

### Members

Properties are read and written through `org.freedesktop.DBus.Properties` (`Get`, `Set`, `GetAll`);
`GetAll` gives the readable ones. Methods are called on the class's interface. Every object, the root
and the paths that lead to it answer `org.freedesktop.DBus.Introspectable`; a client finds its own
objects listed there, nobody else's.

## Types

| type | signature |
|---|---|
| 32-bit integer | `i` |
| 16-bit integer | `n` |
| Boolean | `b` |
| text | `s` |
| date-time | `s`, as `2012-03-14T17:05:00`: no zone, whole seconds; never set is `1899-12-30T00:00:00` |
| no value | empty |

Types are strict: an `n` where an `i` is due is refused, and nothing has changed then. Many languages
have one kind of integer and guess its width: say it (`dbus.Int32`, `Variant("i", 17)`).
)MD";

constexpr const char* life = R"MD(
## Life of objects

- An object lives until `ReleaseObject`, or until the client that created it leaves the bus. A client
  that leaves, however it ends, has its objects ended, the youngest first.
- **Ending an object that has a window closes all windows of the server**, those of other clients
  too. Windows are shared: there is one of each kind. So keep your objects while your program runs,
  and set every property right before the one that triggers.
- Only the client (the bus connection) that created an object may use or release it. Anyone may
  introspect it: that shows its class, nothing of its state.
- A client may have 4,096 objects.
- Calls of one client are carried out and answered in their order. While one of them waits (for a
  message box of the start-up, or until a window has come forward), the further calls of that client
  wait, those of other clients do not. So give `CreateObject` no short timeout.
- A call that wants no answer (`NO_REPLY_EXPECTED`) gets none, not even an error.
- The server ends 10 seconds after its last object is gone, with status 0. The next call starts it
  again. Some bindings resolve the bus name once and then call that process: ask for the root object
  anew after your last object has gone.

## Signals

For members whose changes are signalled, `org.freedesktop.DBus.Properties.PropertiesChanged` is sent
with the value, to the creator of the object alone, each time the value is set, also when it is the
same as before. Everything else changes without a signal and must not be cached.

## Errors

| error | when |
|---|---|
| `org.freedesktop.DBus.Error.UnknownObject` | no such object; `CreateObject` of no such class |
| `org.freedesktop.DBus.Error.UnknownInterface` | the object has no such interface |
| `org.freedesktop.DBus.Error.UnknownMethod` | the interface has no such method |
| `org.freedesktop.DBus.Error.UnknownProperty` | the interface has no such property |
| `org.freedesktop.DBus.Error.InvalidArgs` | a value of another type, too few or too many arguments; the message says what was expected and what came; nothing has changed |
| `org.freedesktop.DBus.Error.PropertyReadOnly` | `Set` of a property that can only be read |
| `org.freedesktop.DBus.Error.AccessDenied` | `Get` of a property that can only be written; anything with an object of another client |
| `org.freedesktop.DBus.Error.LimitsExceeded` | more than 4,096 objects, or more than 4,096 calls waiting for an earlier one |
| `net.tarnholm.Kintar3.Error.RunTime` | the class raised a run-time error; the message reads `Run-time error '6': Overflow` |
| `org.freedesktop.DBus.Error.Failed` | a fault of the server itself; its log has more |

## From a shell

An object lives as long as the connection that made it, so tools that connect for one call (`busctl`,
`gdbus`) can ask the root but not hold an object; `kintarctl` can.

```sh
busctl --user get-property net.tarnholm.Kintar3 /net/tarnholm/Kintar3 net.tarnholm.Kintar3.Server Classes
gdbus introspect --session --dest net.tarnholm.Kintar3 --object-path /net/tarnholm/Kintar3
printf 'create objKintar as k\nset k LocGrp 1\nset k ID 17\nwait 5000\n' | kintarctl raw
kintarctl photo --id 17 --locgrp 1 --fname Ada --lname Byron --event Granted --for 30
```

## From another Python binding

```python
import asyncio
from dbus_next import Message, Variant
from dbus_next.aio import MessageBus

async def call(bus, path, interface, member, signature="", *values):
    answer = await bus.call(Message("net.tarnholm.Kintar3", path, interface, member,
                                    signature=signature, body=list(values)))
    if answer.error_name:
        raise RuntimeError(f"{answer.error_name}: {answer.body[0]}")
    return answer.body[0] if answer.body else None

async def main():
    bus = await MessageBus().connect()
    photo = await call(bus, "/net/tarnholm/Kintar3", "net.tarnholm.Kintar3.Server",
                       "CreateObject", "s", "objKintar")
    for member, value in [("LocGrp", Variant("i", 1)), ("LName", Variant("s", "Byron")),
                          ("ID", Variant("i", 17))]:
        await call(bus, photo, "org.freedesktop.DBus.Properties", "Set", "ssv",
                   "net.tarnholm.Kintar3.objKintar", member, value)
    await asyncio.sleep(30)

asyncio.run(main())
```

)MD";

} // namespace

std::string contractText(const std::string& version) {
    return "# The server on the bus\n\nKintar3 " + version + ".\n" + names + life;
}

} // namespace kintar::docs
