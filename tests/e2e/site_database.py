"""The database of a site, as another program reads and writes it, and which engine holds it."""

import configparser
import contextlib
import os
import sqlite3

import psycopg2
import psycopg2.extensions
import psycopg2.extras

ENGINES = ("sqlite", "postgresql")
# The one place that tells what tests make their sites on.
ENGINE = os.environ.get("KINTAR3_TEST_ENGINE", "sqlite")
if ENGINE not in ENGINES:
    raise ValueError(f"KINTAR3_TEST_ENGINE is one of {', '.join(ENGINES)}, not {ENGINE!r}")

TIMESTAMP = 1114


def setting(site, key="Database"):
    # Nothing is interpolated: connection texts hold signs of percent.
    settings = configparser.ConfigParser(interpolation=None)
    settings.read(site / "kintar3.ini", encoding="utf-8")
    return settings["Site"][key]


def set_database(site, database):
    path = site / "kintar3.ini"
    old = setting(site)
    path.write_text(path.read_text().replace(f"Database={old}", f"Database={database}"))


def _with_places(sql):
    return sql.replace("%", "%%").replace("?", "%s")


class _ServerDatabase:
    """Takes statements as they are written for the embedded engine: `?` for a value."""

    def __init__(self, text):
        self._connection = psycopg2.connect(text)
        as_text = psycopg2.extensions.new_type((TIMESTAMP,), "TEXT", lambda value, _: value)
        psycopg2.extensions.register_type(as_text, self._connection)

    def execute(self, sql, values=()):
        cursor = self._connection.cursor()
        cursor.execute(_with_places(sql), tuple(values))
        return cursor

    def executemany(self, sql, rows):
        with self._connection.cursor() as cursor:
            psycopg2.extras.execute_batch(cursor, _with_places(sql), list(rows), page_size=1000)

    def commit(self):
        self._connection.commit()

    def close(self):
        self._connection.close()


@contextlib.contextmanager
def open_database(site):
    """A connection that knows nothing of the system's own; what was done is kept at the end."""
    database = setting(site)
    if database.startswith("postgresql:"):
        connection = _ServerDatabase(database)
    else:
        connection = sqlite3.connect(site / database)
    with contextlib.closing(connection):
        yield connection
        connection.commit()


def rows(site, sql, *values):
    with open_database(site) as database:
        return [tuple(row) for row in database.execute(sql, values).fetchall()]


def change(site, sql, *values):
    with open_database(site) as database:
        database.execute(sql, values)


def change_all(site, *statements):
    for statement in statements:
        change(site, statement)


def settle(site):
    """What a server does by itself minutes after many rows have come: it counts them."""
    if ENGINE == "postgresql":
        change(site, "ANALYZE")


def is_whole(site):
    """What the end of a program may have broken: a file; a server looks after its own."""
    if ENGINE != "sqlite":
        return True
    return rows(site, "PRAGMA integrity_check") == [("ok",)]
