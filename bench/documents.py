"""Writes the documents that the bench shows below /docs: each Markdown file as a page, an index of them, and the
pictures that they show. documents.py OUT REPOSITORY FILE..., FILEs relative to the repository; a link that leads
nowhere is an error."""
import html
import posixpath
import re
import shutil
import sys
from pathlib import Path

import markdown

PAGE = """<!DOCTYPE html>
<html lang="en">
<head>
<meta charset="utf-8">
<meta name="viewport" content="width=device-width">
<title>{title}</title>
<style>
:root {{ color-scheme: light dark }}
body {{ max-width: 60rem; margin: 1rem auto 4rem; padding: 0 1rem; font: 1rem/1.5 sans-serif }}
a {{ color: LinkText }}
table {{ border-collapse: collapse; display: block; overflow-x: auto }}
td, th {{ border: 1px solid #8888; padding: .25rem .5rem; text-align: left; vertical-align: top }}
th:empty {{ padding: 0 }}
code, pre {{ font-family: monospace; background: #8882; border-radius: .2rem }}
code {{ padding: 0 .2rem }}
pre {{ padding: .5rem; overflow-x: auto }}
pre code {{ padding: 0; background: none }}
img {{ max-width: 100%; height: auto }}
</style>
</head>
<body>
<nav><a href="/">The camera</a> · <a href="/docs">Documents</a></nav>
{body}
</body>
</html>
"""


def name_of(file):
    return posixpath.splitext(posixpath.basename(file))[0].lower()


def main(out, repository, files):
    out.mkdir(parents=True, exist_ok=True)
    links = []  # (file, where it leads to in the repository, the heading or nothing)
    pictures = set()
    titles, bodies, headings = {}, {}, {}

    def lead(file, target):
        """Where a link of a file leads on the bench."""
        if re.match(r"[a-z]+:", target):
            return target
        path, _, heading = html.unescape(target).partition("#")
        to = posixpath.normpath(posixpath.join(posixpath.dirname(file), path)) if path else file
        links.append((file, to, heading))
        if to.endswith(".png"):
            pictures.add(to)
            return "/docs/" + posixpath.basename(to)
        return "/docs/" + name_of(to) + ("#" + heading if heading else "")

    for file in files:
        body = markdown.markdown((repository / file).read_text("utf-8"), extensions=["tables", "fenced_code", "toc"])
        bodies[file] = re.sub(r'\b(href|src)="([^"]*)"', lambda found: f'{found[1]}="{lead(file, found[2])}"', body)
        headings[file] = set(re.findall(r'<h\d id="([^"]*)"', body))
        titles[file] = html.unescape(re.sub(r"<[^>]*>", "", re.search(r"<h1[^>]*>(.*?)</h1>", body)[1]))

    for file, to, heading in links:
        if to not in bodies and to not in pictures or heading and heading not in headings[to]:
            sys.exit(f"{file}: the link to {to}#{heading} leads nowhere.")
    for file in files:
        page = PAGE.format(title=html.escape(titles[file]), body=bodies[file])
        (out / (name_of(file) + ".html")).write_text(page, "utf-8")
    index = "".join(f'<li><a href="/docs/{name_of(file)}">{html.escape(titles[file])}</a></li>\n' for file in files)
    page = PAGE.format(title="Documents", body=f'<h1 id="documents">Documents</h1>\n<ul>\n{index}</ul>')
    (out / "index.html").write_text(page, "utf-8")
    unseen = {f"docs/{picture.name}" for picture in repository.glob("docs/*.png")} - pictures
    if unseen:
        sys.exit(f"Nobody shows {', '.join(sorted(unseen))}.")
    for picture in pictures:
        shutil.copyfile(repository / picture, out / posixpath.basename(picture))


main(Path(sys.argv[1]), Path(sys.argv[2]), sys.argv[3:])
