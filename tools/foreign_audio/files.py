import random
import subprocess


def command(*arguments):
    return subprocess.run(arguments, check=True, capture_output=True).stdout


def ffmpeg(*arguments):
    return command("ffmpeg", "-v", "error", "-nostdin", "-y", *arguments)


def write(name, data):
    with open(name, "wb") as file:
        file.write(data)


def read(name):
    with open(name, "rb") as file:
        return file.read()


def junk(size):
    """The same bytes each time."""
    return random.Random(1).randbytes(size)
