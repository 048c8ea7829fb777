"""The contract of the bus, as clients of four kinds meet it: dbus-python, dbus-next, gdbus, busctl."""

import asyncio
import os
import re
import signal
import subprocess

import dbus
import pytest
from dbus_next import Message, MessageType, Variant
from dbus_next.aio import MessageBus
from desktop import BUS_NAME, PROPERTIES, ROOT, TOP, await_true

ERROR = "org.freedesktop.DBus.Error."
SERVER = f"{BUS_NAME}.Server"


def error_of(call, *arguments):
    """The name and the text of the error that a call ends in."""
    with pytest.raises(dbus.DBusException) as raised:
        call(*arguments)
    return raised.value.get_dbus_name(), raised.value.get_dbus_message()


def test_gdbus_introspects_the_root(desktop):
    told = desktop.run(
        "gdbus", "introspect", "--session", "--dest", BUS_NAME, "--object-path", ROOT
    ).stdout
    assert f"interface {SERVER}" in told
    assert "CreateObject(in  s class,\n                   out o object);" in told
    assert "readonly s Version = '4.4.12';" in told


def test_busctl_reads_the_classes(desktop):
    told = desktop.run(
        "busctl", "--user", "get-property", BUS_NAME, ROOT, SERVER, "Classes"
    ).stdout
    classes = told.split()[2:]
    assert '"objKintar"' in classes and '"objSysPath"' in classes and '"objImageType"' in classes
    assert int(told.split()[1]) == len(classes)


def test_busctl_is_told_what_is_wrong(desktop):
    refused = desktop.run(
        "busctl", "--user", "call", BUS_NAME, ROOT, SERVER, "CreateObject", "s", "objMissing",
        check=False,
    )
    assert refused.returncode != 0
    assert "objMissing" in refused.stderr


def test_an_instance_tells_its_members_to_gdbus(desktop):
    photo = desktop.client().create("objKintar")
    told = desktop.run(
        "gdbus", "introspect", "--session", "--dest", BUS_NAME, "--object-path", photo.path
    ).stdout
    assert '@org.freedesktop.DBus.Property.EmitsChangedSignal("false")\n      writeonly i ID;' in told
    assert "writeonly s DateTime;" in told


def test_unknown_things_have_the_standard_errors(desktop):
    client = desktop.client()
    photo = client.create("objKintar")
    name, text = error_of(client.create, "objMissing")
    assert (name, "objMissing" in text) == (ERROR + "UnknownObject", True)
    assert error_of(photo.set, "Missing", 1)[0] == ERROR + "UnknownProperty"
    assert error_of(photo.call, "Missing")[0] == ERROR + "UnknownMethod"
    elsewhere = client.bus.get_object(BUS_NAME, photo.path + "0", introspect=False)
    assert error_of(
        lambda: elsewhere.GetAll(photo.interface, dbus_interface=PROPERTIES)
    )[0] == ERROR + "UnknownObject"
    assert error_of(
        lambda: photo.proxy.get_dbus_method("Do", "net.other.Interface")()
    )[0] == ERROR + "UnknownInterface"


def test_types_are_strict(desktop):
    photo = desktop.client().create("objKintar")
    for value in (dbus.Int16(3), dbus.Int64(3), dbus.UInt32(3), "3", True, 3.0):
        name, text = error_of(photo.set, "LocGrp", value)
        assert name == ERROR + "InvalidArgs"
        assert "objKintar.LocGrp expects a 32-bit integer (i)" in text
    photo.set("LocGrp", dbus.Int32(3))


def test_write_only_properties_are_not_read(desktop):
    photo = desktop.client().create("objKintar")
    assert error_of(photo.get, "LName")[0] == ERROR + "AccessDenied"
    assert photo.get_all() == {}


def test_the_version_cannot_be_written(desktop):
    root = desktop.client().root
    assert error_of(
        lambda: root.Set(
            SERVER, "Version", dbus.String("5", variant_level=1), dbus_interface=PROPERTIES
        )
    )[0] == ERROR + "PropertyReadOnly"


def test_a_run_time_error_has_its_number(desktop):
    photo = desktop.client().create("objKintar")
    assert error_of(photo.set, "DateTime", "yesterday, I think") == (
        "net.tarnholm.Kintar3.Error.RunTime",
        "Run-time error '13': Type mismatch",
    )


def test_only_the_creator_reaches_an_object(desktop):
    photo = desktop.client().create("objKintar")
    other = desktop.client()
    theirs = other.bus.get_object(BUS_NAME, photo.path, introspect=False)
    for call in (
        lambda: theirs.Set(
            photo.interface, "ID", dbus.Int32(1, variant_level=1), dbus_interface=PROPERTIES
        ),
        lambda: theirs.GetAll(photo.interface, dbus_interface=PROPERTIES),
        lambda: other.release(photo),
    ):
        assert error_of(call)[0] == ERROR + "AccessDenied"
    photo.set("LName", "Still here")


def test_a_released_object_is_gone(desktop):
    client = desktop.client()
    photo = client.create("objKintar")
    client.release(photo)
    assert error_of(photo.set, "LName", "x")[0] == ERROR + "UnknownObject"


def test_a_second_binding_creates_sets_and_releases(desktop):
    async def call(bus, path, interface, member, signature="", *values):
        return await bus.call(
            Message(BUS_NAME, path, interface, member, signature=signature, body=list(values))
        )

    async def drive():
        bus = await MessageBus(bus_address=desktop.address).connect()
        created = await call(bus, ROOT, SERVER, "CreateObject", "s", "objKintar")
        assert created.signature == "o"
        path = created.body[0]
        for member, value in (
            ("LName", Variant("s", "Lindqvist")),
            ("FName", Variant("s", "Astrid")),
            ("LocGrp", Variant("i", 1)),
            ("ID", Variant("i", 1)),
        ):
            answer = await call(
                bus, path, PROPERTIES, "Set", "ssv", f"{BUS_NAME}.objKintar", member, value
            )
            assert answer.message_type == MessageType.METHOD_RETURN, answer.body
        await asyncio.to_thread(desktop.await_window, "Lindqvist, Astrid")
        wrong = await call(
            bus, path, PROPERTIES, "Set", "ssv", f"{BUS_NAME}.objKintar", "ID", Variant("n", 1)
        )
        assert wrong.error_name == ERROR + "InvalidArgs"
        released = await call(bus, ROOT, SERVER, "ReleaseObject", "o", path)
        assert released.message_type == MessageType.METHOD_RETURN
        bus.disconnect()

    asyncio.run(drive())
    desktop.await_no_window("Lindqvist, Astrid")


def test_a_killed_client_closes_its_windows(desktop):
    photo = desktop.start("kintarctl", "photo", "--id", "1", "--lname", "Killed", "--fname", "Soon")
    desktop.await_window("Killed, Soon")
    photo.send_signal(signal.SIGKILL)
    photo.wait()
    desktop.await_no_window("Killed, Soon")


def test_an_interrupted_kintarctl_closes_its_window_and_ends_well(desktop):
    photo = desktop.start("kintarctl", "photo", "--id", "1", "--lname", "Gone", "--fname", "Soon")
    desktop.await_window("Gone, Soon")
    photo.send_signal(signal.SIGINT)
    assert photo.wait(timeout=60) == 0
    desktop.await_no_window("Gone, Soon")


def test_kintarctl_raw_drives_the_window(desktop):
    raw = desktop.start("kintarctl", "raw", stdin=subprocess.PIPE, stdout=subprocess.PIPE)
    raw.stdin.write("create objKintar as k\nset k LName \"O'Brien  \\\"Jr\\\"\"\nset k ID 1\n")
    raw.stdin.flush()
    desktop.await_window("O'Brien +\"Jr\", ")
    raw.stdin.close()
    assert raw.wait(timeout=60) == 0
    assert raw.stdout.read().startswith(f"{ROOT}/objKintar/")
    desktop.await_no_window("O'Brien.*")


def documented(desktop, binding):
    """Starts the program in docs/bus.md that uses `binding`."""
    with open(os.path.join(TOP, "docs", "bus.md"), encoding="utf-8") as document:
        blocks = re.findall(r"```python\n(.*?)```", document.read(), re.DOTALL)
    program = next(block for block in blocks if binding in block)
    return desktop.start("/usr/bin/python3", "-c", program, stdin=subprocess.PIPE)


def test_the_first_documented_program_works_as_it_stands(desktop):
    program = documented(desktop, "import dbus\n")
    desktop.await_window("Byron, Ada")
    program.stdin.write("\n")
    program.stdin.close()
    assert program.wait(timeout=60) == 0
    desktop.await_no_window("Byron, Ada")


def test_the_second_documented_program_works_as_it_stands(desktop):
    program = documented(desktop, "dbus_next")
    desktop.await_window("Byron, ")
    program.kill()
    program.wait()
    desktop.await_no_window("Byron, ")


def test_the_server_ends_by_itself_and_starts_again(desktop):
    client = desktop.client()
    client.release(client.create("objImageType"))
    first = desktop.server_pid()
    await_true(lambda: not desktop.server_runs(), 30.0, "the end of the server")
    # A fresh client: the binding remembers the unique name of the server that has ended.
    fresh = desktop.client()
    fresh.create("objImageType")
    assert desktop.server_pid() != first
