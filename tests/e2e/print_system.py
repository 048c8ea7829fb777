"""A private print system: its own cupsd on a socket, its queues a folder of files each."""

import os
import shutil
import stat
import subprocess
import tempfile
import time

from desktop import await_true

BACKEND = """#!/bin/sh
# job-id user title copies options [file]: keeps what it gets in the folder of the URI.
[ $# -eq 0 ] && { echo 'direct folder "Unknown" "folder"'; exit 0; }
folder=${DEVICE_URI#folder:}
out="$folder/$1.$4.partial"
if [ -n "$6" ]; then cat "$6" >"$out"; else cat >"$out"; fi
mv "$out" "$folder/$1.$4.pdf"
"""

PPD = """*PPD-Adobe: "4.3"
*FormatVersion: "4.3"
*FileVersion: "1.0"
*LanguageVersion: English
*LanguageEncoding: ISOLatin1
*PCFileName: "FOLDER.PPD"
*Manufacturer: "Kintar"
*Product: "(Folder)"
*ModelName: "Folder"
*ShortNickName: "Folder"
*NickName: "Folder"
*PSVersion: "(3010.000) 0"
*LanguageLevel: "3"
*ColorDevice: True
*DefaultColorSpace: RGB
*FileSystem: False
*cupsFilter: "application/pdf 0 -"
*OpenUI *PageSize/Page Size: PickOne
*DefaultPageSize: A4
*PageSize A4/A4: "<</PageSize[595 842]>>setpagedevice"
*PageSize Letter/Letter: "<</PageSize[612 792]>>setpagedevice"
*CloseUI: *PageSize
*OpenUI *PageRegion/Page Region: PickOne
*DefaultPageRegion: A4
*PageRegion A4/A4: "<</PageSize[595 842]>>setpagedevice"
*PageRegion Letter/Letter: "<</PageSize[612 792]>>setpagedevice"
*CloseUI: *PageRegion
*DefaultImageableArea: A4
*ImageableArea A4/A4: "0 0 595 842"
*ImageableArea Letter/Letter: "0 0 612 792"
*DefaultPaperDimension: A4
*PaperDimension A4/A4: "595 842"
*PaperDimension Letter/Letter: "612 792"
"""

CONFIGURATION = """LogLevel warn
Listen {folder}/socket
Browsing Off
DefaultAuthType None
<Location />
  Order allow,deny
  Allow all
</Location>
<Location /admin>
  Order allow,deny
  Allow all
</Location>
<Policy default>
  <Limit All>
    Order deny,allow
    Allow all
  </Limit>
</Policy>
"""

FILES = """ServerRoot {folder}/root
RequestRoot {folder}/spool
CacheDir {folder}/cache
StateDir {folder}/state
TempDir {folder}/spool/tmp
DocumentRoot {folder}/root
DataDir {data}
ServerBin {folder}/bin
AccessLog {folder}/access_log
ErrorLog {folder}/error_log
PageLog {folder}/page_log
SystemGroup root
User {user}
Group {group}
FileDevice Yes
Sandboxing relaxed
"""


class PrintSystem:
    """Queues by name; `jobs` gives the PDF files that one has received."""

    def __init__(self, queues, default=None):
        import grp
        import pwd

        # A socket's path has to be short.
        self._folder = tempfile.mkdtemp(prefix="kintar-cups-")
        os.chmod(self._folder, 0o755)
        for name in ("root/ppd", "root/ssl", "spool/tmp", "cache", "state/certs", "bin", "jobs"):
            os.makedirs(os.path.join(self._folder, name))
        self._copy_programs()
        values = {
            "folder": self._folder,
            "data": "/usr/share/cups",
            "user": pwd.getpwuid(os.getuid()).pw_name if os.getuid() else "lp",
            "group": grp.getgrgid(os.getgid()).gr_name if os.getuid() else "lp",
        }
        for name, text in (("cupsd.conf", CONFIGURATION), ("cups-files.conf", FILES)):
            with open(os.path.join(self._folder, "root", name), "w", encoding="ascii") as file:
                file.write(text.format(**values))
        self._make_queues(queues, default)
        if os.getuid() == 0:
            for path, folders, files in os.walk(self._folder):
                for entry in [path] + [os.path.join(path, file) for file in files]:
                    if "/bin" not in entry:
                        shutil.chown(entry, "lp", "lp")
        self._daemon = subprocess.Popen(
            [
                "/usr/sbin/cupsd",
                "-f",
                "-c",
                os.path.join(self._folder, "root", "cupsd.conf"),
                "-s",
                os.path.join(self._folder, "root", "cups-files.conf"),
            ],
            stderr=subprocess.DEVNULL,
        )
        await_true(
            lambda: set(self.names()) == set(queues), what=f"the print system ({self.log()})"
        )

    def _copy_programs(self):
        system = "/usr/lib/cups"
        for name in os.listdir(system):
            if name != "backend":
                os.symlink(os.path.join(system, name), os.path.join(self._folder, "bin", name))
        backends = os.path.join(self._folder, "bin", "backend")
        os.mkdir(backends)
        backend = os.path.join(backends, "folder")
        with open(backend, "w", encoding="ascii") as file:
            file.write(BACKEND)
        os.chmod(backend, stat.S_IRWXU | stat.S_IRGRP | stat.S_IXGRP | stat.S_IROTH | stat.S_IXOTH)

    def _make_queues(self, queues, default):
        printers = ""
        for name in queues:
            folder = os.path.join(self._folder, "jobs", name)
            os.makedirs(folder)
            kind = "DefaultPrinter" if name == default else "Printer"
            printers += (
                f"<{kind} {name}>\nInfo {name}\nDeviceURI folder:{folder}\nState Idle\n"
                f"Accepting Yes\nShared No\nErrorPolicy stop-printer\n</{kind}>\n"
            )
            ppd = os.path.join(self._folder, "root", "ppd", f"{name}.ppd")
            with open(ppd, "w", encoding="ascii") as file:
                file.write(PPD)
        path = os.path.join(self._folder, "root", "printers.conf")
        with open(path, "w", encoding="ascii") as file:
            file.write(printers)

    @property
    def environment(self):
        return {"CUPS_SERVER": os.path.join(self._folder, "socket")}

    def names(self):
        found = subprocess.run(
            ["lpstat", "-v"],
            env=dict(os.environ, LC_ALL="C", **self.environment),
            capture_output=True,
            text=True,
            check=False,
        )
        return [line.split()[2].rstrip(":") for line in found.stdout.splitlines()]

    def jobs(self, queue):
        """The PDF files of a queue, in order; copies are the middle part of their names."""
        folder = os.path.join(self._folder, "jobs", queue)
        names = sorted(name for name in os.listdir(folder) if name.endswith(".pdf"))
        return [os.path.join(folder, name) for name in names]

    def await_job(self, queue, number=1):
        return await_true(
            lambda: len(self.jobs(queue)) >= number and self.jobs(queue)[number - 1],
            20,
            f"job {number} of {queue}: {self.log()}",
        )

    def log(self):
        path = os.path.join(self._folder, "error_log")
        if not os.path.exists(path):
            return ""
        with open(path, encoding="utf-8", errors="replace") as file:
            return file.read()[-2000:]

    def close(self):
        self._daemon.terminate()
        self._daemon.wait(timeout=60)
        shutil.rmtree(self._folder, ignore_errors=True)


def text_of(pdf):
    """The text of a PDF file, as it stands on its pages."""
    return subprocess.run(
        ["pdftotext", "-layout", pdf, "-"], capture_output=True, text=True, check=True
    ).stdout
