-- The figures of the emission-average report for the twelve months to December 2005: point value, amount and emissions
-- of each material, and the sums of each method. No page is made of them.
PRAGMA cache_size = -200000;
CREATE TEMP TABLE emitted AS
  WITH used AS (
    SELECT u.material, sum(CASE u.unit WHEN 2 THEN u.quantity ELSE u.quantity * m.density * 1000 END) AS pounds
    FROM usage u JOIN materials m ON m.rowid = u.material
    WHERE u.active = 1 AND u.period IN ('1/2005', '2/2005', '3/2005', '4/2005', '5/2005', '6/2005', '7/2005',
      '8/2005', '9/2005', '10/2005', '11/2005', '12/2005')
    GROUP BY u.material)
  SELECT t.rowid AS type, m.custom_id, m.hap_content,
    round(t.coefficient * pow(m.hap_content, t.exponent), 2) AS point_value,
    coalesce(round(used.pounds / 2.2046 / 1000, 2), 0) AS amount
  FROM materials m
    JOIN types t ON t.material_type = m.material_type AND t.application_method = m.application_method
    LEFT JOIN used ON used.material = m.rowid
  WHERE t.application_method <> 'Closed Molding';
SELECT custom_id, hap_content, point_value, amount, round(point_value * amount, 2) FROM emitted;
SELECT t.material_type, t.application_method, sum(e.amount), sum(e.point_value * e.amount),
  sum(e.amount) * t.emission_limit
FROM types t LEFT JOIN emitted e ON e.type = t.rowid
GROUP BY t.rowid ORDER BY t.material_type;
