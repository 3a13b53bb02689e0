"""A web server on loopback that answers what it is told to, byte for byte."""
from __future__ import annotations

import socket
import socketserver
import threading
from typing import Callable

Answer = bytes | Callable[[socket.socket, str], None]


def reply(body: bytes, head: str = "Content-Type: text/html; charset=utf-8",
          status: str = "200 OK") -> bytes:
    lines = f"HTTP/1.1 {status}\r\n{head}\r\nContent-Length: {len(body)}\r\nConnection: close\r\n\r\n"
    return lines.encode() + body


def page(title: str, text: str) -> bytes:
    return reply(f"<!doctype html><title>{title}</title><article><p>{text}</article>".encode())


def redirect(target: str) -> bytes:
    return reply(b"", f"Location: {target}", "302 Found")


class Site:
    """Serves what it was given, on a port the system chooses; notes every path asked for."""

    def __init__(self, address: str = "127.0.0.1", port: int = 0) -> None:
        self.answers: dict[str, Answer] = {}
        self.otherwise: Answer = reply(b"", status="404 Not Found")
        self.asked: list[tuple[str, str]] = []  # (Host, path)
        self.reached: list[str] = []  # the address of ours that each connection was made to
        self.stopping = threading.Event()
        site = self

        class Handler(socketserver.BaseRequestHandler):
            def handle(self) -> None:
                site.reached.append(self.request.getsockname()[0])
                site._handle(self.request)

        class Server(socketserver.ThreadingTCPServer):
            address_family = socket.AF_INET6 if ":" in address else socket.AF_INET
            daemon_threads = True
            allow_reuse_address = True
            request_queue_size = 128

            def server_bind(self) -> None:
                if self.address_family == socket.AF_INET6:
                    self.socket.setsockopt(socket.IPPROTO_IPV6, socket.IPV6_V6ONLY, 1)
                super().server_bind()

            def handle_error(self, *_: object) -> None:
                pass  # who hangs up is no fault of ours

        self.server = Server((address, port), Handler)
        self.address = address
        self.port: int = self.server.server_address[1]
        threading.Thread(target=self.server.serve_forever, args=(0.05,), daemon=True).start()

    def serve(self, path: str, answer: Answer) -> None:
        self.answers[path] = answer

    def link(self, path: str) -> str:
        host = f"[{self.address}]" if ":" in self.address else self.address
        return f"http://{host}:{self.port}{path}"

    def _handle(self, connection: socket.socket) -> None:
        connection.settimeout(60)
        head = b""
        try:
            while b"\r\n\r\n" not in head and len(head) < 65_536:
                more = connection.recv(8192)
                if not more or (not head and more[0] == 0x16):  # the start of TLS: not ours
                    return
                head += more
            words = head.split(b"\r\n", 1)[0].decode("latin-1").split(" ")
            path = words[1] if len(words) > 1 else ""
            host = next((line[5:].strip().decode("latin-1") for line in head.split(b"\r\n")
                         if line.lower().startswith(b"host:")), "")
            self.asked.append((host, path))
            answer = self.answers.get(path.split("?")[0], self.otherwise)
            if callable(answer):
                answer(connection, path)
            else:
                connection.sendall(answer)
        except OSError:
            pass

    def close(self) -> None:
        self.stopping.set()
        self.server.shutdown()
        self.server.server_close()

    def __enter__(self) -> "Site":
        return self

    def __exit__(self, *_: object) -> None:
        self.close()
