-- Not timed: the usage that the sums are made of, indexed for them.
CREATE TABLE usage_lines (custom_id TEXT, month INTEGER, year INTEGER, quantity REAL, unit TEXT);
.mode ascii
.separator "|" "\n"
.import usage.txt usage_lines
CREATE TABLE usage (material INTEGER, period TEXT, quantity REAL, unit INTEGER, active INTEGER);
INSERT INTO usage
  SELECT m.rowid, l.month || '/' || l.year, l.quantity, CASE l.unit WHEN 'lbs' THEN 2 ELSE 1 END, 1
  FROM usage_lines l JOIN materials m ON trim(m.custom_id) = trim(l.custom_id) COLLATE NOCASE ORDER BY l.rowid;
DROP TABLE usage_lines;
CREATE INDEX usage_of_material ON usage (material, period, active, quantity, unit);
CREATE INDEX usage_of_period ON usage (period, active, material, quantity, unit);
ANALYZE;
