// The operator's box: who has the chat open, what was said, and a line for the visitor of one's
// choice.
'use strict';

const chooser = document.getElementById('visitor');
const log = document.getElementById('conversation');
const line = document.getElementById('line');
const outcome = document.getElementById('operator-status');
let conversations = [];

function who(conversation) {
  const name = conversation.name || conversation.email || 'A visitor';
  return `${name} (${conversation.visitor.slice(0, 8)})`;
}

function showChooser() {
  const chosen = chooser.value;
  const labels = conversations.map(who);
  if ([...chooser.options].map((option) => option.textContent).join() === labels.join()) return;
  chooser.replaceChildren(...conversations.map((one, index) => new Option(labels[index], one.visitor)));
  if (conversations.some((one) => one.visitor === chosen)) chooser.value = chosen;
}

function showConversation() {
  const current = conversations.find((one) => one.visitor === chooser.value);
  const words = current
    ? current.lines.map((one) => `${one.author || 'Visitor'}: ${one.text}`)
    : ['Nobody has opened the chat yet.'];
  const shown = words.slice(-30).join('\n');
  if (log.textContent === shown) return;
  log.textContent = shown;
  log.scrollTop = log.scrollHeight;
}

async function look() {
  try {
    const answer = await fetch('/chat/conversations', { cache: 'no-store' });
    if (answer.ok) conversations = await answer.json();
  } catch {
    // The page's own status line tells that the server is away.
  }
  showChooser();
  showConversation();
  for (const control of [chooser, line, document.getElementById('say')])
    control.disabled = conversations.length === 0;
  setTimeout(look, 1000);
}

document.getElementById('operator').addEventListener('submit', async (event) => {
  event.preventDefault();
  if (line.value.trim() === '') return;
  const body = JSON.stringify({ visitor: chooser.value, text: line.value.trim() });
  try {
    const answer = await fetch('/chat/operator', { method: 'POST', body });
    outcome.textContent = answer.ok ? '' : (await answer.json()).message;
    if (answer.ok) line.value = '';
  } catch {
    outcome.textContent = 'The server does not answer.';
  }
});
chooser.addEventListener('change', showConversation);

look();
