"""The alarm pop-up, driven over the bus and looked at on the screen."""

import os
import time

import dbus
import pytest
from desktop import ForeignWindow, WindowManager, await_true

RED = 0x0000FF


def announce(alarm, text, colour=RED, location="Head Office", workstation=0):
    alarm.set("WsHandle", dbus.Int32(workstation))
    alarm.set("ForeColor", dbus.Int32(colour))
    alarm.set("LocName", location)
    alarm.set("EventString", text)


@pytest.fixture
def alarm(desktop):
    return desktop.client().create("objAlarmPopUp")


@pytest.fixture
def manager(desktop):
    made = WindowManager(desktop)
    yield made
    made.close()


class FullScreenProgram(ForeignWindow):
    """Another program that fills the screen and has the keyboard."""

    def __init__(self, desktop, title="Full Screen"):
        super().__init__(desktop, title, (0, 0, 1280, 1024))
        atom = self._display.intern_atom
        from Xlib import X
        from Xlib.protocol import event

        root = self._display.screen().root
        self.window.change_attributes(background_pixel=0x204060)
        message = event.ClientMessage(
            window=self.window,
            client_type=atom("_NET_WM_STATE"),
            data=(32, [1, atom("_NET_WM_STATE_FULLSCREEN"), 0, 1, 0]),
        )
        root.send_event(
            message, event_mask=X.SubstructureRedirectMask | X.SubstructureNotifyMask
        )
        self.window.clear_area()
        self._display.sync()


def test_shows_the_text_above_a_program_that_fills_the_screen(
    desktop, alarm, manager, accessible
):
    program = FullScreenProgram(desktop)
    await_true(
        lambda: "_NET_WM_STATE_FULLSCREEN" in manager.states(program.window.id),
        what="the program to fill the screen",
    )
    announce(alarm, "Door forced open: Loading Dock, east side")
    window = desktop.await_window("Alarm  Head Office")
    await_true(lambda: manager.stacking()[-1] == window, what="the alarm on top")
    left, top, width, height = desktop.geometry(window)

    def seen():
        picture = desktop.picture().crop((left, top, left + width, top + height))
        return any(pixel == (255, 0, 0) for _, pixel in picture.getcolors(1 << 20))

    await_true(seen, what="the red text on the screen")
    assert accessible.text("Label_1") == "Door forced open: Loading Dock, east side"
    assert program.has_focus()
    folder = os.environ.get("KINTAR3_SCREENSHOTS")
    if folder:
        desktop.picture().save(os.path.join(folder, "alarm-over-full-screen.png"))
    program.close()


def test_takes_no_key_from_the_window_that_is_typed_into(desktop, alarm, accessible):
    editor = ForeignWindow(desktop)
    editor.keys_received()
    announce(alarm, "Door forced open")
    desktop.await_window("Alarm  Head Office")
    desktop.type("  \n\n  ")
    assert await_true(editor.keys_received, what="the keys") > 0
    assert editor.has_focus()
    assert desktop.windows("Alarm  Head Office")
    assert alarm.get("Enabled")
    editor.close()


def test_shows_the_latest_of_many_alarms_in_one_window(desktop, alarm, accessible):
    for number in range(200):
        announce(alarm, f"Alarm number {number}")
    await_true(lambda: accessible.text("Label_1") == "Alarm number 199", what="the latest text")
    assert len(desktop.windows("Alarm  Head Office")) == 1


def test_ticking_the_box_hides_the_window_and_switches_it_off(desktop, alarm, accessible):
    announce(alarm, "Door forced open")
    desktop.await_window("Alarm  Head Office")
    accessible.click("chkDisAblePopUp")
    desktop.await_no_window("Alarm  Head Office")
    assert not alarm.get("Enabled")
    announce(alarm, "Fire", location="")
    desktop.await_window("Alarm  ")
    assert not alarm.get("Enabled")


def test_enabled_is_true_and_shows_nothing_before_any_alarm(desktop, alarm):
    assert alarm.get("Enabled")
    assert not desktop.windows("Alarm.*")


def test_ignore_hides_and_the_next_alarm_shows_again(desktop, alarm, accessible):
    announce(alarm, "Door forced open")
    desktop.await_window("Alarm  Head Office")
    accessible.click("cmdIgnore")
    desktop.await_no_window("Alarm  Head Office")
    announce(alarm, "Fire")
    desktop.await_window("Alarm  Head Office")


@pytest.mark.parametrize("state", ["minimised", "covered"])
def test_goes_to_the_workstation_of_another_process(desktop, alarm, accessible, manager, state):
    workstation = ForeignWindow(desktop, "Workstation", (100, 100, 500, 400))
    cover = ForeignWindow(desktop, "Cover", (50, 50, 700, 600))
    if state == "minimised":
        manager.minimise(workstation.window.id)
        await_true(lambda: not desktop.windows("Workstation"), what="the workstation to vanish")
    announce(alarm, "Door forced open", workstation=workstation.window.id)
    desktop.await_window("Alarm  Head Office")
    accessible.click("cmdSwitch")
    desktop.await_no_window("Alarm  Head Office")
    await_true(lambda: desktop.windows("Workstation"), what="the workstation to be back")
    await_true(
        lambda: manager.stacking()[-1] == workstation.window.id, what="the workstation in front"
    )
    await_true(workstation.has_focus, what="the workstation to have the focus")
    cover.close()
    workstation.close()


def test_a_stale_handle_is_no_error(desktop, alarm, accessible):
    gone = ForeignWindow(desktop, "Gone")
    handle = gone.window.id
    gone.close()
    for handle in (handle, 0, -1):
        announce(alarm, "Door forced open", workstation=handle)
        desktop.await_window("Alarm  Head Office")
        accessible.click("cmdSwitch")
        desktop.await_no_window("Alarm  Head Office")


def test_a_thousand_alarms_in_a_second_do_not_block_the_bus(desktop, alarm, accessible):
    announce(alarm, "first")
    proxy = alarm.proxy
    started = time.monotonic()
    for number in range(1000):
        proxy.get_dbus_method("Set", "org.freedesktop.DBus.Properties")(
            alarm.interface, "EventString", f"Alarm {number}", signature="ssv", ignore_reply=True
        )
    # Another client is answered while the alarms are still being served.
    other = desktop.client()
    assert other.root.Get(
        "net.tarnholm.Kintar3.Server", "Version", dbus_interface="org.freedesktop.DBus.Properties"
    ) == "4.4.12"
    assert alarm.get("Enabled")  # behind the thousand, on the same connection
    print(f"1,000 alarms served after {time.monotonic() - started:.2f} s")
    await_true(lambda: accessible.text("Label_1") == "Alarm 999", what="the latest alarm")


def test_kintarctl_announces_an_alarm(desktop, accessible):
    holder = desktop.start("kintarctl", "alarm", "Fire", "--colour", "#0000FF", "--locname", "Dock")
    desktop.await_window("Alarm  Dock")
    assert accessible.text("Label_1") == "Fire"
    holder.terminate()
    assert holder.wait(timeout=60) == 0
    desktop.await_no_window("Alarm  Dock")
    wrong = desktop.run("kintarctl", "alarm", "Fire", "--colour", "red", check=False)
    assert wrong.returncode == 2
