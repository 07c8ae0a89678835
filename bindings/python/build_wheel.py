# SPDX-License-Identifier: Apache-2.0
"""The build backend (PEP 517): compiles the library with CMake and packs it beside the module.

Standard library alone, so that a wheel is built where no package index can be reached.
"""

import base64
import hashlib
import io
import os
import pathlib
import re
import shutil
import subprocess
import sysconfig
import tarfile
import tempfile
import time
import zipfile

HERE = pathlib.Path(__file__).resolve().parent
# Of the library: in the tree above, or packed along in a source distribution.
SOURCES = HERE / "library" if (HERE / "library").is_dir() else HERE.parents[1]
OWN = ("README.md", "build_wheel.py", "pyproject.toml")
LIBRARYS = ("CMakeLists.txt", "LICENSE", "include", "src")


def _version():
    header = (SOURCES / "include" / "lrasynth.h").read_text()
    return ".".join(re.findall(r"^#define LRASYNTH_VERSION_(?:MAJOR|MINOR|PATCH) (\d+)$", header, re.MULTILINE))


def _metadata():
    fields = dict(re.findall(r'^([\w-]+) = "(.*)"$', (HERE / "pyproject.toml").read_text(), re.MULTILINE))
    return (f"Metadata-Version: 2.1\nName: {fields['name']}\nVersion: {_version()}\nSummary: {fields['description']}\n"
            f"Author: The lrasynth authors\nLicense: Apache-2.0\nRequires-Python: {fields['requires-python']}\n"
            f"Description-Content-Type: text/markdown\n\n{(HERE / 'README.md').read_text()}").encode()


def _library():
    """The compiled library."""
    with tempfile.TemporaryDirectory() as build:
        options = "-DCMAKE_BUILD_TYPE=Release -DLRASYNTH_BUILD_TOOLS=OFF -DLRASYNTH_BUILD_TESTS=OFF -DLRASYNTH_INSTALL=OFF"
        generator = ["-G", "Ninja"] if shutil.which("ninja") else []  # where there may be no make
        subprocess.run(["cmake", "-S", SOURCES, "-B", build, *generator, *options.split()], check=True)
        subprocess.run(["cmake", "--build", build, "--parallel"], check=True)
        return (pathlib.Path(build) / "src" / "liblrasynth.so.1").read_bytes()


def _modules():
    return sorted(path for path in (HERE / "lrasynth").iterdir() if path.suffix in (".py", ".typed"))


def _files(top, names):
    """Of each of those files and of all that is in those directories its name and content."""
    for name in names:
        paths = sorted((top / name).rglob("*")) if (top / name).is_dir() else [top / name]
        yield from ((path.relative_to(top), path.read_bytes()) for path in paths if path.is_file())


def prepare_metadata_for_build_wheel(metadata_directory, config_settings=None):
    """So that nobody compiles twice."""
    about = pathlib.Path(metadata_directory) / f"lrasynth-{_version()}.dist-info"
    about.mkdir()
    (about / "METADATA").write_bytes(_metadata())
    return about.name


def build_wheel(wheel_directory, config_settings=None, metadata_directory=None):
    tag = "py3-none-" + re.sub(r"[-.]", "_", sysconfig.get_platform())
    about = f"lrasynth-{_version()}.dist-info"
    files = {f"lrasynth/{path.name}": path.read_bytes() for path in _modules()}
    files["lrasynth/liblrasynth.so.1"] = _library()
    files[f"{about}/LICENSE"] = (SOURCES / "LICENSE").read_bytes()
    files[f"{about}/METADATA"] = _metadata()
    files[f"{about}/WHEEL"] = f"Wheel-Version: 1.0\nGenerator: lrasynth\nRoot-Is-Purelib: false\nTag: {tag}\n".encode()
    record = "".join(
        f"{name},sha256={base64.urlsafe_b64encode(hashlib.sha256(data).digest()).rstrip(b'=').decode()},{len(data)}\n"
        for name, data in files.items())
    files[f"{about}/RECORD"] = f"{record}{about}/RECORD,,\n".encode()

    wheel = f"lrasynth-{_version()}-{tag}.whl"
    # Equal contents make equal wheels.
    date = time.gmtime(max(int(os.environ.get("SOURCE_DATE_EPOCH", 0)), 315532800))[:6]
    with zipfile.ZipFile(pathlib.Path(wheel_directory) / wheel, "w", zipfile.ZIP_DEFLATED) as archive:
        for name, data in files.items():
            info = zipfile.ZipInfo(name, date)
            info.external_attr = 0o100644 << 16
            info.compress_type = zipfile.ZIP_DEFLATED
            archive.writestr(info, data)
    return wheel


def build_sdist(sdist_directory, config_settings=None):
    top = f"lrasynth-{_version()}"
    modules = [f"lrasynth/{path.name}" for path in _modules()]
    files = [(pathlib.Path("PKG-INFO"), _metadata()), *_files(HERE, [*OWN, *modules])]
    files += [("library" / name, data) for name, data in _files(SOURCES, LIBRARYS)]
    with tarfile.open(pathlib.Path(sdist_directory) / f"{top}.tar.gz", "w:gz") as archive:
        for name, data in files:
            info = tarfile.TarInfo(f"{top}/{name}")
            info.size = len(data)
            archive.addfile(info, io.BytesIO(data))
    return f"{top}.tar.gz"
