/** Two 32-bit halves mixed over the text's characters, as 53 bits in base 36. */
export function hash(text) {
  let high = 0xdeadbeef;
  let low = 0x41c6ce57;
  for (let at = 0; at < text.length; ++at) {
    const code = text.charCodeAt(at);
    high = Math.imul(high ^ code, 2654435761);
    low = Math.imul(low ^ code, 1597334677);
  }
  high = Math.imul(high ^ (high >>> 16), 2246822507) ^ Math.imul(low ^ (low >>> 13), 3266489909);
  low = Math.imul(low ^ (low >>> 16), 2246822507) ^ Math.imul(high ^ (high >>> 13), 3266489909);
  return (4294967296 * (2097151 & low) + (high >>> 0)).toString(36);
}
