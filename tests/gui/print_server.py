"""A print server of its own for a test: CUPS, with queues that lead into files."""
import contextlib
import os
import pathlib
import subprocess
import tempfile

from desktop import wait_for

CUPS_PROGRAMS = "/usr/lib/cups"
BACKEND = """#!/bin/sh
# job user title copies options [file]
[ $# -eq 0 ] && exit
cat "${6:--}" >"${DEVICE_URI#tofile:}.part"
chmod a+r "${DEVICE_URI#tofile:}.part"
mv "${DEVICE_URI#tofile:}.part" "${DEVICE_URI#tofile:}"
"""


class PrintServer:
    """A context manager. CUPS runs its queues as another user, so its folder is open to all."""

    def __enter__(self):
        with contextlib.ExitStack() as stack:
            self.folder = pathlib.Path(stack.enter_context(tempfile.TemporaryDirectory()))
            self.configure()
            self.process = subprocess.Popen(["/usr/sbin/cupsd", "-f", "-c", self.folder / "cupsd.conf",
                                             "-s", self.folder / "cups-files.conf"], stderr=subprocess.DEVNULL)
            stack.callback(lambda: (self.process.terminate(), self.process.wait()))
            self.environment = {"CUPS_SERVER": str(self.folder / "state/socket")}
            wait_for("the print server", lambda: "is running" in self.ask("lpstat", "-r"))
            self.stack = stack.pop_all()
        return self

    def __exit__(self, *error):
        self.stack.close()

    def configure(self):
        names = "root", "spool", "cache", "state", "log", "out", "programs/backend"
        for name in names:
            (self.folder / name).mkdir(parents=True)
            (self.folder / name).chmod(0o777)
        self.folder.chmod(0o755)
        for part in os.listdir(CUPS_PROGRAMS):
            if part != "backend":
                (self.folder / "programs" / part).symlink_to(f"{CUPS_PROGRAMS}/{part}")
        backend = self.folder / "programs/backend/tofile"
        backend.write_text(BACKEND)
        for path in backend, backend.parent, backend.parent.parent:
            path.chmod(0o755)  # CUPS runs nothing that others may write to
        (self.folder / "cupsd.conf").write_text(f"""
            Listen {self.folder}/state/socket
            WebInterface No
            Browsing Off
            DefaultAuthType None
            <Location />
            Allow all
            </Location>
            <Policy default>
            <Limit All>
            Allow all
            </Limit>
            </Policy>
            """)
        (self.folder / "cups-files.conf").write_text(f"""
            ServerBin {self.folder}/programs
            ServerRoot {self.folder}/root
            RequestRoot {self.folder}/spool
            CacheDir {self.folder}/cache
            StateDir {self.folder}/state
            TempDir {self.folder}/spool
            AccessLog {self.folder}/log/access
            ErrorLog {self.folder}/log/error
            PageLog {self.folder}/log/page
            SystemGroup root
            """)

    def ask(self, *command):
        done = subprocess.run(command, env={**os.environ, **self.environment}, capture_output=True, check=False)
        return done.stdout.decode()

    def add(self, name):
        """A queue; answers the file in which its last job will stand."""
        output = self.folder / "out" / name
        self.ask("lpadmin", "-p", name, "-E", "-v", f"tofile:{output}", "-m", "raw")
        return output

    def remove(self, name):
        self.ask("lpadmin", "-x", name)

    def refuse_jobs(self, name):
        self.ask("cupsreject", name)
