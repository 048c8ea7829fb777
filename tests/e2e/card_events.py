"""Card events as a client sends them, and what a site knows of the people in them."""

import dbus
from site_database import rows

FULL_RIGHTS_OPERATOR = 1
NO_RIGHTS_OPERATOR = 6


def person(site, name_id):
    found = rows(site, "SELECT LName, FName, LocGrp FROM Names WHERE ID = ?", name_id)
    last, first, group = found[0]
    return {"ID": name_id, "LName": last, "FName": first, "LocGrp": group}


def photo_path(site, name_id):
    """The photo that the group's default image type shows, or None."""
    found = rows(
        site,
        "SELECT i.FileName FROM Names n JOIN ImageType t ON t.LocGrp = n.LocGrp"
        " AND t.DefaultImage <> 0 JOIN Images i ON i.NameID = n.ID AND i.ImgType = t.Num"
        " WHERE n.ID = ?",
        name_id,
    )
    path = site / "Data" / "Images" / found[0][0] if found else None
    return path if path and path.is_file() else None


def people_with_photos(site, count):
    ids = rows(site, "SELECT ID FROM Names ORDER BY ID")
    return [name_id for (name_id,) in ids if photo_path(site, name_id)][:count]


def prepare(kintar, someone, operator=FULL_RIGHTS_OPERATOR, code="1234"):
    """Sends what belongs to one card event, short of what triggers it."""
    kintar.set("LocGrp", dbus.Int32(someone["LocGrp"]))
    kintar.set("LocName", "Head Office")
    kintar.set("FName", someone["FName"])
    kintar.set("LName", someone["LName"])
    kintar.set("Device", "Main door")
    kintar.set("EventDesc", "Access granted")
    kintar.set("DateTime", "3/14/2012 5:05:00 PM")
    kintar.set("Code", code)
    kintar.set("OprID", dbus.Int32(operator))


def show(kintar, someone, **event):
    """Sends one card event."""
    prepare(kintar, someone, **event)
    kintar.set("ID", dbus.Int32(someone["ID"]))


def title_of(someone):
    return f"{someone['LName']}, {someone['FName']}"
