// Pages that no one would write: random tags in random order, the same for the same seed.

function random(seed) {
  let state = seed >>> 0;
  return (n) => {
    state = (state + 0x6d2b79f5) >>> 0;
    let t = state;
    t = Math.imul(t ^ (t >>> 15), t | 1);
    t ^= t + Math.imul(t ^ (t >>> 7), t | 61);
    return ((t ^ (t >>> 14)) >>> 0) % n;
  };
}

const INLINE = ['b', 'i', 'u', 'em', 'strong', 'tt', 'code', 'font', 'a', 'span', 'cite', 'big', 'small', 'nobr', 's', 'kbd'];
const BLOCK = ['p', 'p', 'p', 'div', 'ul', 'ol', 'li', 'li', 'dl', 'dt', 'dd', 'h1', 'h2', 'pre', 'blockquote', 'center', 'form', 'address'];
const TABLE = ['table', 'tr', 'td', 'td', 'th', 'tbody', 'thead', 'tfoot', 'caption', 'colgroup', 'col'];
const RARE = ['button', 'object', 'marquee', 'select', 'option', 'optgroup', 'ruby', 'rt', 'rb', 'svg', 'math', 'mi', 'foreignObject',
  'desc', 'annotation-xml', 'template', 'noscript', 'body', 'html', 'head', 'br', 'hr', 'img', 'input', 'listing', 'x-y', 'frameset',
  'nobr', 'iframe', 'image', 'applet'];
const RAW = ['script', 'style', 'textarea', 'title', 'xmp', 'noframes'];
const TEXT = ['x', ' ', '\n', 'some text', ' y ', '<', '>', '< ', '&', '&amp;', '\r\n', '  \n  ', 'a > b', '1 < 2', '&#32;', '\0', '\t'];
const OTHER = ['<!-- c -->', '<!-->', '<!--->', '<!-- > -->', '<!-- a --!>', '</>', '</ x>', '<?pi x>', '<!x>', '<![CDATA[ x ]]>',
  '<%= x %>', '<% if a > b then %>', '<?php echo "<b>"; ?>', '<a href="<%= f("x") %>">', '<!doctype html>', '</br>'];
const FONT = ['', ' color=red', ' size="2"', ' face=\'x\''];

function pick(next, list) {
  return list[next(list.length)];
}

function startTag(next, name) {
  let attributes = '';
  if (name === 'font') attributes = pick(next, FONT);
  else if (name === 'a') attributes = pick(next, ['', ' href=x', ' name="y"']);
  else if (name === 'input') attributes = pick(next, ['', ' type=hidden']);
  else if (name === 'annotation-xml') attributes = pick(next, ['', ' encoding=text/html']);
  else if (next(8) === 0) attributes = pick(next, [' class=x', " title='a>b'", ' title="<b>"', ' x=it\'s', '/', ' a b=c ']);
  return `<${next(4) === 0 ? name.toUpperCase() : name}${attributes}>`;
}

export function generatedPage(seed) {
  const next = random(seed);
  let page = pick(next, ['', '', '<!DOCTYPE html>', '<!DOCTYPE HTML PUBLIC "-//W3C//DTD HTML 4.01//EN">',
    '<!DOCTYPE HTML PUBLIC "-//W3C//DTD HTML 4.01 Transitional//EN">']);
  if (next(2) === 0) page += '<html><head><title>t</title></head><body>\n';
  // Some pages keep to few kinds, so that what happens rarely by chance happens at all.
  const kinds = [INLINE, BLOCK];
  if (next(2) === 0) kinds.push(TABLE);
  if (next(3) === 0) kinds.push(RARE);
  const few = next(3) === 0;
  const length = 2 + next(few ? 12 : 40);
  const open = [];
  for (let i = 0; i < length; ++i) {
    const what = next(20);
    if (what < 7) {
      const list = few ? pick(next, kinds).slice(0, 4) : pick(next, kinds);
      const name = pick(next, list);
      open.push(name);
      page += startTag(next, name);
    } else if (what < 13) {
      // Mostly the end of something open, in order or not.
      if (open.length > 0 && next(5) !== 0) {
        const at = next(3) === 0 ? next(open.length) : open.length - 1;
        page += `</${open.splice(at, 1)[0]}>`;
      } else {
        page += `</${pick(next, pick(next, kinds))}>`;
      }
    } else if (what < 18) {
      page += pick(next, TEXT);
    } else if (what === 18) {
      page += pick(next, OTHER);
    } else if (next(3) === 0) {
      const name = pick(next, RAW);
      page += `<${name}> <b> x > y </p> ${pick(next, ['', '<!--', '<!-- <script>'])}`;
      if (next(8) !== 0) page += `</${name}>`;
    }
  }
  page += pick(next, ['', '', '\n', '</body></html>', '\n</body>\n</html>\n', '</html>\n<!-- end -->', '</body>\n<!-- end -->\n</html>',
    '</body> more </html>', '<b', '<!-- open', '</']);
  return page;
}
