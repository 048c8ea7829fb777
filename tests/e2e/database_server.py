"""A private PostgreSQL server in a folder of its own, started and stopped by tests."""

import contextlib
import os
import shutil
import signal
import subprocess
import tempfile

from desktop import await_true

UNPRIVILEGED = "nobody"


class DatabaseServer:
    """Makes and starts a server; with a `primary`, one that follows it change by change."""

    def __init__(self, primary=None, administrator="kintar"):
        self._administrator = administrator
        self.programs = subprocess.run(
            ["pg_config", "--bindir"], check=True, capture_output=True, text=True
        ).stdout.strip()
        # A socket's whole path has to be short.
        self.folder = tempfile.mkdtemp(prefix="kintar-pg-", dir="/tmp")
        os.chmod(self.folder, 0o755)
        if os.geteuid() == 0:
            shutil.chown(self.folder, UNPRIVILEGED)
        if primary:
            self._run("pg_basebackup", "-D", self._data, "-h", primary.folder, "-U", administrator,
                      "--checkpoint=fast", "--write-recovery-conf", "--no-sync")  # fmt: skip
        else:
            self._run("initdb", "-D", self._data, "-U", administrator, "-E", "UTF8", "--locale=C",
                      "-A", "trust", "-N")  # fmt: skip
        self._process = None
        self.start()

    @property
    def _data(self):
        return os.path.join(self.folder, "data")

    def _command(self, name, *arguments):
        """The server refuses to run as root; it ends with the test that started it."""
        wrapper = ["setpriv", "--pdeathsig=QUIT"]
        if os.geteuid() == 0:
            wrapper += [f"--reuid={UNPRIVILEGED}", "--regid=nogroup", "--clear-groups"]
        return wrapper + [os.path.join(self.programs, name), *arguments]

    def _run(self, name, *arguments):
        subprocess.run(self._command(name, *arguments), check=True, capture_output=True)

    def make_standby(self):
        """A server that follows this one, whose changes end from now on only when that one has them."""
        standby = DatabaseServer(self)
        # Not before: the standby would inherit it, and wait for a standby of its own one day.
        self.sql("postgres", "ALTER SYSTEM SET synchronous_standby_names = '*'")
        self.sql("postgres", "SELECT pg_reload_conf()")
        follows = "SELECT 1 FROM pg_stat_replication WHERE sync_state = 'sync'"
        await_true(lambda: self.sql("postgres", follows), 60, "the standby to follow")
        return standby

    def promote(self):
        """Makes a standby take over."""
        self.sql("postgres", "SELECT pg_promote()")

    def ask_for_passwords(self):
        """Of everybody but the administrator, from now on."""
        with open(os.path.join(self._data, "pg_hba.conf"), "w", encoding="ascii") as rules:
            rules.write(f"local all {self._administrator} trust\nlocal all all scram-sha-256\n")
        self.sql("postgres", "SELECT pg_reload_conf()")

    def start(self):
        with open(os.path.join(self.folder, "log"), "ab") as log:
            options = ("-k", self.folder, "-c", "listen_addresses=", "-c", "fsync=off",
                       "-c", "max_connections=200")  # fmt: skip
            self._process = subprocess.Popen(
                self._command("postgres", "-D", self._data, *options), stdout=log, stderr=log
            )
        ready = [os.path.join(self.programs, "pg_isready"), "-q", "-h", self.folder]
        await_true(
            lambda: subprocess.run(ready).returncode == 0, 60, what="the database server to start"
        )

    def _end(self, how):
        self._process.send_signal(how)
        self._process.wait(timeout=60)

    def stop(self):
        """As an administrator stops it: everybody is hung up on."""
        self._end(signal.SIGINT)

    def kill(self):
        """The hard way: nothing is finished."""
        self._end(signal.SIGQUIT)

    def cut_power(self):
        """The server and its children end at once, without a last word."""
        self._signal_all(signal.SIGKILL)
        self._process.wait(timeout=60)

    def pause(self):
        """The server neither answers nor hangs up any more, as behind a dead network."""
        self._signal_all(signal.SIGSTOP)

    def resume(self):
        self._signal_all(signal.SIGCONT)

    def _signal_all(self, how):
        """The server and its children: each connection is a process."""
        children = subprocess.run(
            ["ps", "-o", "pid=", "--ppid", str(self._process.pid)], capture_output=True, text=True
        ).stdout.split()
        for process in [self._process.pid, *map(int, children)]:
            with contextlib.suppress(ProcessLookupError):
                os.kill(process, how)

    def make_database(self, name, copy_of="template0"):
        self.sql("postgres", f"CREATE DATABASE {name} TEMPLATE {copy_of}")
        return f"postgresql://kintar@/{name}?host={self.folder}"

    def drop_database(self, name):
        self.sql("postgres", f"DROP DATABASE {name} WITH (FORCE)")

    def sql(self, database, statement):
        """Rows as lists of texts, as psql shows them to any program."""
        program = [os.path.join(self.programs, "psql"), "-X", "-At", "-h", self.folder]
        found = subprocess.run(
            [*program, "-U", self._administrator, "-d", database, "-v", "ON_ERROR_STOP=1", "-c", statement],
            check=True,
            capture_output=True,
            text=True,
        )
        return [line.split("|") for line in found.stdout.splitlines()]

    def close(self):
        if self._process.poll() is None:
            self.kill()
        shutil.rmtree(self.folder, ignore_errors=True)
