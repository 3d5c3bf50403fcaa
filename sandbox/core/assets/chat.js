// The chat's page: shows who it was opened for, sends what the visitor writes, and waits for
// answers. It speaks to the program around it, where there is one, through window.LiveChatWidget.
'use strict';

const lines = document.getElementById('lines');
const text = document.getElementById('text');
let last = 0;

// The address: name=value pairs; the variables are pairs once more, escaped as a whole.
function pairs(query) {
  return query.split('&').filter(Boolean).map((pair) => {
    const middle = pair.indexOf('=');
    const parts = middle < 0 ? [pair, ''] : [pair.slice(0, middle), pair.slice(middle + 1)];
    return parts.map((part) => {
      try {
        return decodeURIComponent(part);
      } catch {
        return part;
      }
    });
  });
}

const opened = Object.fromEntries(pairs(location.search.slice(1)));
const variables = Object.fromEntries(pairs(opened.params || ''));

// One visitor for each browser profile; the page may be loaded again at any time.
function visitorId() {
  const key = 'visitor';
  if (!localStorage.getItem(key)) localStorage.setItem(key, crypto.randomUUID());
  return localStorage.getItem(key);
}
const visitor = visitorId();

function showDetails() {
  const rows = [
    ['License', opened.license], ['Group', opened.group], ['Name', opened.name],
    ['E-mail', opened.email], ...Object.entries(variables),
  ];
  for (const [key, value] of rows) {
    if (!value) continue;
    const term = document.createElement('dt');
    const description = document.createElement('dd');
    term.textContent = key;
    description.textContent = value;
    document.getElementById('details').append(term, description);
  }
}

function showLine(line) {
  const row = document.createElement('div');
  row.className = line.author ? 'line' : 'line mine';
  row.dataset.id = line.id;
  const body = document.createElement('p');
  body.textContent = line.text;
  const about = document.createElement('span');
  const time = new Date(line.time).toLocaleTimeString([], { hour: '2-digit', minute: '2-digit' });
  about.textContent = line.author ? `${line.author}, ${time}` : time;
  row.append(body, about);
  lines.append(row);
  lines.scrollTop = lines.scrollHeight;
}

function take(answer) {
  for (const line of answer.lines) {
    if (line.number <= last) continue;
    last = line.number;
    showLine(line);
    if (line.author && window.LiveChatWidget) {
      window.LiveChatWidget.message({
        id: line.id, text: line.text, timestamp: line.time, author: { name: line.author },
      });
    }
  }
}

function showStatus(words) {
  const status = document.getElementById('status');
  status.textContent = words;
  status.hidden = words === '';
}

async function post(path, body) {
  const answer = await fetch(path, { method: 'POST', body: JSON.stringify({ visitor, ...body }) });
  if (!answer.ok) throw new Error((await answer.json()).message);
}

let unheard = false; // whether the status line says that no news came
async function listen() {
  try {
    const answer = await fetch(`/chat/news?visitor=${visitor}&after=${last}`, { cache: 'no-store' });
    if (answer.status === 404) await enter(); // the service was started anew
    else if (!answer.ok) throw new Error('no news');
    else take(await answer.json());
    if (unheard) showStatus('');
    unheard = false;
    listen();
  } catch {
    unheard = true;
    showStatus('The chat does not answer. It goes on asking.');
    setTimeout(listen, 1000);
  }
}

function enter() {
  last = 0;
  lines.replaceChildren();
  return post('/chat/enter', {
    name: opened.name || '', email: opened.email || '', license: opened.license || '',
    group: opened.group || '', variables,
  });
}

function showFocus(focused) {
  const state = document.getElementById('focus');
  state.textContent = focused ? 'In front' : 'Hidden';
  state.classList.toggle('on', focused);
}

document.getElementById('composer').addEventListener('submit', async (event) => {
  event.preventDefault();
  const written = text.value.trim();
  if (written === '') return;
  try {
    await post('/chat/say', { text: written });
    text.value = '';
    showStatus('');
  } catch (error) {
    showStatus(`Not sent: ${error.message}`);
  }
});
// A window of its own has no other way to go than this button.
document.getElementById('hide').addEventListener('click', () => {
  if (window.opener) window.close();
  else if (window.LiveChatWidget) window.LiveChatWidget.hide();
});
// By script, as the program around the page sends every link elsewhere.
document.getElementById('window').addEventListener('click', () => {
  window.open('/chat/open?license=0&group=0&name=Second%20window');
});
window.addEventListener('chatfocus', () => showFocus(true));
window.addEventListener('chatblur', () => showFocus(false));

showDetails();
enter().catch(() => {}).then(listen);
