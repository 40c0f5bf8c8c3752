// A file for the reader, from an address or from bytes.

export function download(name, content) {
  const link = document.createElement('a');
  link.href = typeof content === 'string' ? content : URL.createObjectURL(content);
  link.download = name;
  link.click();
  if (typeof content !== 'string') URL.revokeObjectURL(link.href);
}
